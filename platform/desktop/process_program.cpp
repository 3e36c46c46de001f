#include "platform/desktop/process_program.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tolvenary
{

namespace
{

constexpr std::array<std::string_view, 20> interpreters = {
    "bash", "dash", "env",  "fish", "gjs",    "gjs-console", "guile", "java",  "ksh",  "lua",
    "mono", "node", "perl", "php",  "python", "ruby",        "sh",    "tclsh", "wish", "zsh",
};

std::string fileName(const std::string &path)
{
    return std::filesystem::path(path).filename().string();
}

} // namespace

bool isInterpreter(const std::string &program)
{
    // python3.11 is python.
    const auto last = program.find_last_not_of("0123456789.");
    const auto name = std::string_view(program).substr(0, last == std::string::npos ? 0 : last + 1);
    return std::find(interpreters.begin(), interpreters.end(), name) != interpreters.end();
}

std::vector<std::string> programsOf(const Process &process)
{
    std::vector<std::string> programs;
    const auto &arguments = process.arguments;
    if (!process.executable.empty())
        programs.push_back(fileName(process.executable));
    else if (!arguments.empty())
        programs.push_back(fileName(arguments.front()));
    if (programs.empty() || arguments.size() < 2 || !isInterpreter(programs.front()))
        return programs;

    // After -c comes a command, not the name of a script.
    const auto script = std::find_if(arguments.begin() + 1, arguments.end(),
                                     [](const std::string &argument) { return !argument.starts_with('-'); });
    if (script != arguments.end() && *std::prev(script) != "-c")
        programs.push_back(fileName(*script));
    return programs;
}

} // namespace tolvenary
