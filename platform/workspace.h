#pragma once

#include <functional>

namespace tolvenary
{

/// What the desktop tells every program about the wishes of its user. Thread: main.
class NSWorkspace
{
  public:
    virtual ~NSWorkspace() = default;

    /// Whether the user wants nothing to move that need not. The answer is at hand; what the desktop says later is told
    /// to the observer.
    virtual bool accessibilityDisplayShouldReduceMotion() = 0;

    /// From now on the observer is called whenever the answer may have changed, in place of the one before. None ends
    /// it.
    virtual void observeAccessibilityDisplayOptionsDidChange(std::function<void()> observer) = 0;
};

} // namespace tolvenary
