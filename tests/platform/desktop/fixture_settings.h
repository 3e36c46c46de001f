#pragma once

#include "tests/platform/desktop/temporary_folder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace tolvenary
{

/// Settings in a file of the test's own, and no bus, so that only the settings can tell anything.
class FixtureSettings : public testing::Environment
{
  public:
    void SetUp() override
    {
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
        setenv("GSETTINGS_BACKEND", "keyfile", 1);
        unsetenv("XDG_RUNTIME_DIR");
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

  private:
    TemporaryFolder m_folder;
};

} // namespace tolvenary
