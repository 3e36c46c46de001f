#pragma once

#include "platform/desktop/desktop_settings.h"

#include <functional>

namespace tolvenary
{

/// The switch for animations among the desktop's own settings, which decides where no portal speaks for the desktop. A
/// desktop without such a switch animates. Thread: main, whose event loop brings the changes.
class AnimationSettings
{
  public:
    /// `changed` is called when the switch has been thrown, never before the constructor has returned.
    explicit AnimationSettings(std::function<void()> changed);
    ~AnimationSettings();
    AnimationSettings(const AnimationSettings &) = delete;
    AnimationSettings &operator=(const AnimationSettings &) = delete;

    bool areAnimationsOff() const;

  private:
    std::function<void()> m_changed;
    DesktopSettings m_settings;
    unsigned long m_handler = 0;
};

} // namespace tolvenary
