#pragma once

#include "platform/window_occlusion.h"

#include <utility>

namespace tolvenary
{

/// A screen on which a window is covered when the test says so.
class FakeWindowOcclusion final : public NSWindowOcclusion
{
  public:
    void observeWindowDidChangeOcclusionState(std::uintptr_t, std::function<void(bool)> observer) override
    {
        m_observer = std::move(observer);
    }

    void setVisible(bool visible)
    {
        if (m_observer)
            m_observer(visible);
    }
    bool isObserved() const { return static_cast<bool>(m_observer); }

  private:
    std::function<void(bool)> m_observer;
};

} // namespace tolvenary
