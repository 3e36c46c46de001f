#pragma once

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace tolvenary
{

/// Questions that the server has been asked and has still to answer. Each is asked twice, one after the other, so that
/// what the server tells in answer to our binding of its objects is known, too, when the second answer is there.
///
/// Pure logic, with the time handed in. Under the control lock.
class RoundTrips
{
  public:
    using Clock = std::chrono::steady_clock;
    using Done = std::function<void(bool answered)>;

    /// `ask` asks the server, and gives the number that its answer will carry.
    explicit RoundTrips(std::function<int()> ask) : m_ask(std::move(ask)) {}

    bool isEmpty() const { return m_trips.empty(); }
    /// When the one that was begun first must have been answered.
    Clock::time_point firstDeadline() const { return m_trips.front().deadline; }
    bool isAnyLate(Clock::time_point now) const;

    // `done` may begin another one.

    void begin(Clock::time_point deadline, Done done);
    void answered(int number);
    void failLate(Clock::time_point now);
    void finishAll(bool answered);

    /// On a new connection, which knows of no question yet.
    void askAgain();

  private:
    struct Trip {
        int number = 0;
        int answersMissing = 2;
        Clock::time_point deadline;
        Done done;
    };

    template <typename Selected> void finish(Selected selected, bool answered);

    std::function<int()> m_ask;
    std::vector<Trip> m_trips;
};

} // namespace tolvenary
