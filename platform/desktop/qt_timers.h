#pragma once

#include "platform/timers.h"

namespace tolvenary
{

/// Timers of Qt's event loop, on the steady clock. A timer may be destroyed inside its own block.
class QtTimers : public Timers
{
  public:
    Duration now() override;

    std::unique_ptr<Timer> scheduledTimerWithTimeInterval(Duration interval, bool repeats,
                                                          std::function<void()> block) override;
};

} // namespace tolvenary
