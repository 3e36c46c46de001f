#pragma once

#include <chrono>
#include <thread>

namespace tolvenary::session
{

/// Looks at `condition` again and again until it holds or `patience` is over; returns whether it held. At least one
/// look is taken. `pause` is what happens between two looks.
template <typename Condition, typename Pause>
bool waitUntil(Condition condition, std::chrono::milliseconds patience, Pause pause)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        pause();
    }
    return true;
}

template <typename Condition> bool waitUntil(Condition condition, std::chrono::milliseconds patience)
{
    return waitUntil(condition, patience, [] { std::this_thread::sleep_for(std::chrono::milliseconds(2)); });
}

} // namespace tolvenary::session
