#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tolvenary
{

/// A process as the kernel shows it. What may not be read stays empty.
struct Process {
    std::int32_t id = 0;
    std::int32_t parent = 0;
    std::string executable; ///< path
    std::vector<std::string> arguments;
    std::string cgroup; ///< the text of its cgroup file
};

/// The living processes of one user under a proc file system, in the order of their ids. Processes come and go while
/// it reads: one that cannot be read is skipped. Takes about 30 µs a process. Thread: any but the main one.
std::vector<Process> readProcesses(const std::filesystem::path &proc, std::uint32_t user);

} // namespace tolvenary
