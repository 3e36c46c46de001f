#include "tests/session/support/process_state.h"

#include <filesystem>
#include <fstream>
#include <sched.h>

namespace tolvenary::session
{

namespace
{

std::filesystem::path procOf(pid_t process)
{
    return std::filesystem::path("/proc") / std::to_string(process);
}

std::size_t entries(const std::filesystem::path &directory)
{
    const std::filesystem::directory_iterator all(directory);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// Empty for an ordinary thread.
std::string realTimeSchedulingOf(pid_t thread)
{
    sched_param parameters{};
    sched_getparam(thread, &parameters);
    const int policy = sched_getscheduler(thread) & ~SCHED_RESET_ON_FORK;
    if (policy != SCHED_FIFO && policy != SCHED_RR)
        return {};
    return (policy == SCHED_FIFO ? "SCHED_FIFO " : "SCHED_RR ") + std::to_string(parameters.sched_priority);
}

} // namespace

ProcessState ProcessState::of(pid_t process)
{
    std::ifstream statm(procOf(process) / "statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return {resident * 4, entries(procOf(process) / "fd"), entries(procOf(process) / "task")};
}

std::string realTimeThreads(pid_t process)
{
    std::string all;
    for (const auto &task : std::filesystem::directory_iterator(procOf(process) / "task")) {
        const std::string one = realTimeSchedulingOf(std::stoi(task.path().filename().string()));
        if (!one.empty())
            all += (all.empty() ? "" : ", ") + one;
    }
    return all;
}

} // namespace tolvenary::session
