#pragma once

#include "platform/workspace.h"

#include <utility>

namespace tolvenary
{

/// A desktop whose user likes motion, until told otherwise.
class FakeWorkspace final : public NSWorkspace
{
  public:
    bool accessibilityDisplayShouldReduceMotion() override { return m_reduceMotion; }
    void observeAccessibilityDisplayOptionsDidChange(std::function<void()> observer) override
    {
        m_observer = std::move(observer);
    }

    void setReduceMotion(bool reduce)
    {
        m_reduceMotion = reduce;
        if (m_observer)
            m_observer();
    }
    bool isObserved() const { return static_cast<bool>(m_observer); }

  private:
    bool m_reduceMotion = false;
    std::function<void()> m_observer;
};

} // namespace tolvenary
