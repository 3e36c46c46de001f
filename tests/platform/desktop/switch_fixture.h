#pragma once

// Before Qt's headers, whose keywords would take the place of its names.
#include <gio/gio.h>

#include "tests/platform/desktop/fixture_settings.h"

#include <gtest/gtest.h>

namespace tolvenary
{

/// A test with one of the desktop's switches in its hands.
class SwitchFixture : public testing::Test
{
  protected:
    SwitchFixture(const char *schema, const char *key) : m_schema(schema), m_key(key) {}

    void SetUp() override
    {
        auto *schema = g_settings_schema_source_lookup(g_settings_schema_source_get_default(), m_schema, TRUE);
        ASSERT_TRUE(schema) << "not installed: package gsettings-desktop-schemas";
        g_settings_schema_unref(schema);
        m_settings = g_settings_new(m_schema);
        g_settings_reset(m_settings, m_key);
        g_settings_sync();
    }

    void TearDown() override { g_clear_object(&m_settings); }

    void throwSwitch(bool on)
    {
        ASSERT_TRUE(g_settings_set_boolean(m_settings, m_key, on ? TRUE : FALSE));
        g_settings_sync();
    }

  private:
    const char *m_schema;
    const char *m_key;
    GSettings *m_settings = nullptr;
};

} // namespace tolvenary
