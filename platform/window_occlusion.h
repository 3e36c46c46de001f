#pragma once

#include <cstdint>
#include <functional>

namespace tolvenary
{

/// Whether anything of a window can be seen on its screen, or other windows cover all of it. Thread: main.
class NSWindowOcclusion
{
  public:
    virtual ~NSWindowOcclusion() = default;

    /// From now on the observer is told whenever the window comes into view (true) or is covered altogether (false), in
    /// place of the one before; none ends it. Nothing is told of a window on whose system no such thing is known: it
    /// counts as seen. `window` is the system's own name for it.
    virtual void observeWindowDidChangeOcclusionState(std::uintptr_t window, std::function<void(bool)> observer) = 0;
};

} // namespace tolvenary
