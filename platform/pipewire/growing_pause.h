#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace tolvenary
{

/// The pause before something is tried again. Each is twice as long as the one before it, up to the longest: an attempt
/// may cost others something.
///
/// Pure logic, with the time handed in.
class GrowingPause
{
  public:
    using Time = std::chrono::duration<double>;

    explicit GrowingPause(Time shortest, Time longest = Time(16)) : m_shortest(shortest), m_longest(longest) {}

    void begin(Time now)
    {
        m_length = std::clamp(m_length * 2, m_shortest, m_longest);
        m_end = now + m_length;
    }
    void end() { m_end.reset(); }
    /// Ends it, too; the next one is the shortest again.
    void reset() { *this = GrowingPause(m_shortest, m_longest); }

    /// From begin() until end(), also when its time is over.
    bool isUnderWay() const { return m_end.has_value(); }
    bool isOver(Time now) const { return m_end && *m_end <= now; }
    /// Empty when it is not under way.
    std::optional<Time> endsAt() const { return m_end; }

  private:
    Time m_shortest;
    Time m_longest;
    Time m_length{};
    std::optional<Time> m_end;
};

} // namespace tolvenary
