#include "platform/pipewire/round_trips.h"

#include <algorithm>
#include <iterator>

namespace tolvenary
{

void RoundTrips::begin(Clock::time_point deadline, Done done)
{
    m_trips.push_back({m_ask(), 2, deadline, std::move(done)});
}

void RoundTrips::askAgain()
{
    for (Trip &trip : m_trips)
        trip.number = m_ask();
}

bool RoundTrips::isAnyLate(Clock::time_point now) const
{
    return std::ranges::any_of(m_trips, [now](const Trip &trip) { return trip.deadline <= now; });
}

void RoundTrips::answered(int number)
{
    for (Trip &trip : m_trips) {
        if (trip.number == number && --trip.answersMissing > 0)
            trip.number = m_ask();
    }
    finish([](const Trip &trip) { return trip.answersMissing == 0; }, true);
}

void RoundTrips::failLate(Clock::time_point now)
{
    finish([now](const Trip &trip) { return trip.deadline <= now; }, false);
}

void RoundTrips::finishAll(bool answered)
{
    finish([](const Trip &) { return true; }, answered);
}

template <typename Selected> void RoundTrips::finish(Selected selected, bool answered)
{
    const auto rest = std::stable_partition(m_trips.begin(), m_trips.end(), std::not_fn(selected));
    const std::vector<Trip> finished(std::make_move_iterator(rest), std::make_move_iterator(m_trips.end()));
    m_trips.erase(rest, m_trips.end());
    for (const Trip &trip : finished)
        trip.done(answered);
}

} // namespace tolvenary
