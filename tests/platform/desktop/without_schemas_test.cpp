#include "platform/desktop/microphone_settings.h"
#include "tests/platform/desktop/temporary_folder.h"

#include <gtest/gtest.h>

namespace tolvenary
{

namespace
{

TEST(WithoutSchemas, aDesktopWithoutTheSettingDisablesNothing)
{
    const TemporaryFolder folder;
    setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
    setenv("XDG_DATA_DIRS", folder.path().c_str(), 1);
    unsetenv("GSETTINGS_SCHEMA_DIR");
    EXPECT_FALSE(isMicrophoneDisabledInSettings());
}

} // namespace

} // namespace tolvenary
