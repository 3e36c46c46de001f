#include "platform/desktop/animation_settings.h"

#include <gio/gio.h>

namespace tolvenary
{

namespace
{

constexpr auto *schemaName = "org.gnome.desktop.interface";
constexpr auto *key = "enable-animations";

void callObserver(GSettings * /*settings*/, const char * /*key*/, void *observer)
{
    (*static_cast<std::function<void()> *>(observer))();
}

} // namespace

AnimationSettings::AnimationSettings(std::function<void()> changed)
    : m_changed(std::move(changed)), m_settings(openDesktopSettings(schemaName, key))
{
    if (!m_settings)
        return;
    m_handler = g_signal_connect(m_settings.get(), "changed::enable-animations", G_CALLBACK(callObserver), &m_changed);
    // Changes are told only of a key that was read after the connection was made.
    areAnimationsOff();
}

AnimationSettings::~AnimationSettings()
{
    if (m_settings)
        g_signal_handler_disconnect(m_settings.get(), m_handler);
}

bool AnimationSettings::areAnimationsOff() const
{
    return m_settings && g_settings_get_boolean(m_settings.get(), key) == FALSE;
}

} // namespace tolvenary
