#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tolvenary
{

/// Tells delay from jitter: frames that were still queued after every one of the last renders never get played in time,
/// they only make everything behind them late. One thread.
class DelayGuard
{
  public:
    static constexpr std::size_t window = 8;

    /// `frames` may wait for good; twice as many are tolerated, since they come and go. Restarts the watch.
    void setCushion(std::uint32_t frames);

    /// Takes what is still queued after a render and answers how much of it is delay, to be skipped. real-time
    std::uint32_t observe(std::uint32_t queuedFrames);

    /// Begins anew, as is due after a skip. real-time
    void restart() { m_observed = 0; }

  private:
    std::array<std::uint32_t, window> m_queued{};
    std::size_t m_observed = 0;
    std::uint32_t m_cushion = 0;
};

} // namespace tolvenary
