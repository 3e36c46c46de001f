#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>

namespace tolvenary::session
{

/// What a running process holds, as the kernel sees it.
struct ProcessState {
    long kilobytes = 0; ///< resident
    std::size_t descriptors = 0;
    std::size_t threads = 0;

    static ProcessState of(pid_t process);
};

/// How the process's real-time threads are scheduled, "SCHED_FIFO 88" for example; empty where the session allows none.
/// The sound server calls the program on such a thread, if on any.
std::string realTimeThreads(pid_t process);

} // namespace tolvenary::session
