#include "platform/desktop/microphone_settings.h"

#include "platform/desktop/desktop_settings.h"

#include <gio/gio.h>

namespace tolvenary
{

namespace
{

bool isSet(const char *schemaName, const char *key)
{
    const DesktopSettings settings = openDesktopSettings(schemaName, key);
    return settings && g_settings_get_boolean(settings.get(), key) != FALSE;
}

} // namespace

bool isMicrophoneDisabledInSettings()
{
    // The privacy schema is where desktops keep it; distributions have moved such keys between the two.
    return isSet("org.gnome.desktop.privacy", "disable-microphone") ||
           isSet("org.gnome.desktop.lockdown", "disable-microphone");
}

} // namespace tolvenary
