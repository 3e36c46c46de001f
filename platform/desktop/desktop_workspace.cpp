#include "platform/desktop/desktop_workspace.h"

#include "platform/desktop/session_bus.h"

namespace tolvenary
{

DesktopWorkspace::DesktopWorkspace()
    : m_settings([this] { tellObserver(); }), m_portal(sessionBusAddress(), [this] { tellObserver(); })
{
}

bool DesktopWorkspace::accessibilityDisplayShouldReduceMotion()
{
    return m_portal.isReduced().value_or(m_settings.areAnimationsOff());
}

void DesktopWorkspace::observeAccessibilityDisplayOptionsDidChange(std::function<void()> observer)
{
    m_observer = std::move(observer);
}

void DesktopWorkspace::tellObserver()
{
    if (m_observer)
        m_observer();
}

} // namespace tolvenary
