#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvenary::session
{

/// Counts what happens inside PipeWire's process callbacks of this program. It stands between the program and the C
/// library: linking callback_watch.cpp is enough.
struct CallbackCounts {
    std::uint64_t callbacks = 0;       ///< of filters, and pretended ones
    std::uint64_t streamCallbacks = 0; ///< of streams
    std::uint64_t allocations = 0;
    std::uint64_t frees = 0;
    std::uint64_t locks = 0;
    std::size_t mutexes = 0;          ///< different ones that were locked
    std::uint64_t waits = 0;          ///< callbacks that began to wait: condition variables, sleeps, polls
    std::uint64_t systemCalls = 0;    ///< callbacks that called the system otherwise, by whatever function
    std::uint64_t contendedLocks = 0; ///< callbacks in which the lock was held by another, or wanted
};

/// From now on; the counts begin at 0.
void beginCounting();
/// Until now.
CallbackCounts endCounting();

/// Frames of the cycle in which a filter was called last, 0 before the first.
std::uint32_t lengthOfTheLastCycle();

/// Marks the calling thread as being in a callback, so that a test can see that the counters count.
class PretendedCallback
{
  public:
    PretendedCallback();
    ~PretendedCallback();
    PretendedCallback(const PretendedCallback &) = delete;
    PretendedCallback &operator=(const PretendedCallback &) = delete;
};

/// Whether the kernel shows all system calls. Where it does not, those of some functions are counted: nanosleep, poll,
/// pthread_cond_wait, read, write, sendmsg, syscall.
bool seesEverySystemCall();

} // namespace tolvenary::session
