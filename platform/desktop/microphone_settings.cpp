#include "platform/desktop/microphone_settings.h"

#include <gio/gio.h>
#include <memory>

namespace tolvenary
{

namespace
{

bool isSet(const char *schemaName, const char *key)
{
    // Asking for a schema or a key that is not installed ends the program, so each is looked for first.
    auto *source = g_settings_schema_source_get_default();
    if (!source)
        return false;
    const std::unique_ptr<GSettingsSchema, decltype(&g_settings_schema_unref)> schema(
        g_settings_schema_source_lookup(source, schemaName, TRUE), g_settings_schema_unref);
    if (!schema || g_settings_schema_has_key(schema.get(), key) == FALSE)
        return false;
    const std::unique_ptr<GSettings, decltype(&g_object_unref)> settings(
        g_settings_new_full(schema.get(), nullptr, nullptr), g_object_unref);
    return g_settings_get_boolean(settings.get(), key) != FALSE;
}

} // namespace

bool isMicrophoneDisabledInSettings()
{
    // The privacy schema is where desktops keep it; distributions have moved such keys between the two.
    return isSet("org.gnome.desktop.privacy", "disable-microphone") ||
           isSet("org.gnome.desktop.lockdown", "disable-microphone");
}

} // namespace tolvenary
