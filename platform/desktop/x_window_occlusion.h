#pragma once

#include "platform/window_occlusion.h"

#include <memory>

namespace tolvenary
{

/// What the X server tells of a window's visibility, on a connection of its own, because Qt's asks for other things.
/// Where there is no X server, or a compositor keeps every window whole, nothing is ever told; where the program's
/// windows are not X windows, no X server is called. (Wayland compositors stop asking for frames instead, and Qt stops
/// drawing.) Thread: main, whose event loop brings the events.
class XWindowOcclusion final : public NSWindowOcclusion
{
  public:
    XWindowOcclusion();
    ~XWindowOcclusion() override;
    XWindowOcclusion(const XWindowOcclusion &) = delete;
    XWindowOcclusion &operator=(const XWindowOcclusion &) = delete;

    void observeWindowDidChangeOcclusionState(std::uintptr_t window, std::function<void(bool)> observer) override;

  private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

} // namespace tolvenary
