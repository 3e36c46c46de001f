#include "bench/process_meter.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace tolvenary::bench
{

namespace
{

std::ifstream open(pid_t process, const char *file)
{
    return std::ifstream("/proc/" + std::to_string(process) + "/" + file);
}

/// Folders of its threads.
std::vector<std::filesystem::path> tasksOf(pid_t process)
{
    std::vector<std::filesystem::path> tasks;
    for (const auto &task : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task"))
        tasks.push_back(task.path());
    return tasks;
}

double rollupMegabytes(pid_t process, const char *field)
{
    std::ifstream rollup = open(process, "smaps_rollup");
    std::string word;
    double kilobytes = std::numeric_limits<double>::quiet_NaN();
    while (rollup >> word)
        if (word == field) {
            rollup >> kilobytes;
            break;
        }
    return kilobytes / 1024;
}

} // namespace

double scheduledSeconds(pid_t process)
{
    double nanoseconds = 0;
    for (const auto &task : tasksOf(process)) {
        double ran = 0;
        std::ifstream(task / "schedstat") >> ran;
        nanoseconds += ran;
    }
    return nanoseconds * 1e-9;
}

double wakeUps(pid_t process)
{
    double sleeps = 0;
    for (const auto &task : tasksOf(process)) {
        std::ifstream status(task / "status");
        std::string word;
        while (status >> word && word != "voluntary_ctxt_switches:") {
        }
        double count = 0;
        status >> count;
        sleeps += count;
    }
    return sleeps;
}

double processorSeconds(pid_t process)
{
    std::string line;
    std::getline(open(process, "stat") >> std::ws, line);
    // The second field is the program's name in brackets, and may hold anything.
    std::istringstream fields(line.substr(line.rfind(')') + 1));
    constexpr int fieldsBeforeUserTime = 11;
    std::string skipped;
    for (int i = 0; i < fieldsBeforeUserTime; ++i)
        fields >> skipped;
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double memoryMegabytes(pid_t process)
{
    return rollupMegabytes(process, "Pss:");
}

double residentMegabytes(pid_t process)
{
    return rollupMegabytes(process, "Rss:");
}

} // namespace tolvenary::bench
