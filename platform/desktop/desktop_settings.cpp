#include "platform/desktop/desktop_settings.h"

#include <gio/gio.h>

namespace tolvenary
{

void CloseDesktopSettings::operator()(_GSettings *settings) const
{
    g_object_unref(settings);
}

DesktopSettings openDesktopSettings(const char *schemaName, const char *key)
{
    // Asking for a schema or a key that is not installed ends the program, so each is looked for first.
    auto *source = g_settings_schema_source_get_default();
    if (!source)
        return nullptr;
    const std::unique_ptr<GSettingsSchema, decltype(&g_settings_schema_unref)> schema(
        g_settings_schema_source_lookup(source, schemaName, TRUE), g_settings_schema_unref);
    if (!schema || g_settings_schema_has_key(schema.get(), key) == FALSE)
        return nullptr;
    return DesktopSettings(g_settings_new_full(schema.get(), nullptr, nullptr));
}

} // namespace tolvenary
