#pragma once

#include "platform/desktop/animation_settings.h"
#include "platform/desktop/portal_motion.h"
#include "platform/workspace.h"

namespace tolvenary
{

/// The user's preferences as a Linux desktop tells them: through the settings portal or, where there is none, through
/// the desktop's own settings. Takes the session bus of the environment at construction. Thread: main.
class DesktopWorkspace final : public NSWorkspace
{
  public:
    DesktopWorkspace();

    bool accessibilityDisplayShouldReduceMotion() override;
    void observeAccessibilityDisplayOptionsDidChange(std::function<void()> observer) override;

  private:
    void tellObserver();

    std::function<void()> m_observer;
    AnimationSettings m_settings;
    PortalMotion m_portal;
};

} // namespace tolvenary
