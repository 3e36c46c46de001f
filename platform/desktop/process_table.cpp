#include "platform/desktop/process_table.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>

namespace tolvenary
{

namespace
{

namespace fs = std::filesystem;

struct Status {
    char state = 0;
    std::int32_t parent = 0;
    std::uint32_t user = 0;
};

// When the process ends meanwhile, the kernel refuses to read on. The stream only sets its state; its buffer, read
// directly, would throw.
std::string contentOf(const fs::path &file)
{
    const std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

std::optional<Status> readStatus(const fs::path &file)
{
    std::ifstream stream(file);
    Status status;
    int found = 0;
    for (std::string line; found < 3 && std::getline(stream, line);) {
        std::istringstream fields(line);
        std::string key;
        fields >> key;
        // The first of the four user ids is the real one: the owner, whatever the process may do.
        if ((key == "State:" && fields >> status.state) || (key == "PPid:" && fields >> status.parent) ||
            (key == "Uid:" && fields >> status.user))
            ++found;
    }
    return found == 3 ? std::optional(status) : std::nullopt;
}

std::string readExecutable(const fs::path &link)
{
    constexpr std::string_view deleted = " (deleted)"; // the package was upgraded under the running program
    std::error_code error;
    auto target = fs::read_symlink(link, error).string();
    if (target.ends_with(deleted))
        target.resize(target.size() - deleted.size());
    return target;
}

std::vector<std::string> readArguments(const fs::path &file)
{
    std::vector<std::string> arguments;
    std::istringstream stream(contentOf(file));
    for (std::string argument; std::getline(stream, argument, '\0');)
        arguments.push_back(argument);
    return arguments;
}

std::optional<Process> readProcess(const fs::path &directory, std::uint32_t user)
{
    Process process;
    const auto name = directory.filename().string();
    const auto *end = name.data() + name.size();
    if (std::from_chars(name.data(), end, process.id).ptr != end)
        return std::nullopt;
    const auto status = readStatus(directory / "status");
    if (!status || status->user != user || status->state == 'Z')
        return std::nullopt;
    process.parent = status->parent;
    process.executable = readExecutable(directory / "exe");
    process.arguments = readArguments(directory / "cmdline");
    process.cgroup = contentOf(directory / "cgroup");
    return process;
}

} // namespace

std::vector<Process> readProcesses(const fs::path &proc, std::uint32_t user)
{
    std::vector<Process> processes;
    std::error_code error;
    for (fs::directory_iterator entry(proc, error), end; !error && entry != end; entry.increment(error)) {
        if (auto process = readProcess(entry->path(), user))
            processes.push_back(std::move(*process));
    }
    std::sort(processes.begin(), processes.end(), [](const Process &a, const Process &b) { return a.id < b.id; });
    return processes;
}

} // namespace tolvenary
