#include "platform/desktop/desktop_command.h"

#include "platform/desktop/process_program.h"

#include <algorithm>
#include <filesystem>
#include <glib.h>
#include <memory>

namespace tolvenary
{

namespace
{

std::vector<std::string> split(const std::string &commandLine)
{
    int count = 0;
    gchar **words = nullptr;
    if (g_shell_parse_argv(commandLine.c_str(), &count, &words, nullptr) == FALSE)
        return {};
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> owner(words, g_strfreev);
    return {words, words + count};
}

/// `env A=1 program` is the program: env gives its place to it.
void dropEnvironment(std::vector<std::string> &words)
{
    if (words.empty() || std::filesystem::path(words.front()).filename() != "env")
        return;
    const auto program = std::find_if(words.begin() + 1, words.end(), [](const std::string &word) {
        return !word.starts_with('-') && word.find('=') == std::string::npos;
    });
    words.erase(words.begin(), program);
}

void addProgram(std::vector<std::string> &programs, const std::string &program)
{
    const auto add = [&](const std::filesystem::path &path) {
        const auto name = path.filename().string();
        if (!name.empty() && std::find(programs.begin(), programs.end(), name) == programs.end())
            programs.push_back(name);
    };
    add(program);
    const std::unique_ptr<gchar, decltype(&g_free)> found(g_find_program_in_path(program.c_str()), g_free);
    std::error_code error;
    if (const auto target = found ? std::filesystem::canonical(found.get(), error) : std::filesystem::path();
        !error && !isInterpreter(target.filename().string()))
        add(target);
}

} // namespace

DesktopCommand parseDesktopCommand(const std::string &exec, const std::string &tryExec)
{
    DesktopCommand command;
    auto words = split(exec);
    dropEnvironment(words);
    if (!words.empty())
        addProgram(command.programs, words.front());
    for (std::size_t at = 1; at < words.size(); ++at) {
        if (words[at].find('%') != std::string::npos)
            continue;
        (words[at].starts_with('-') ? command.options : command.operands).push_back(words[at]);
    }
    // An interpreter without a script, and a launcher whose name says nothing about what it starts, match anything.
    if (command.operands.empty())
        std::erase_if(command.programs, isInterpreter);
    if (!tryExec.empty() && !isInterpreter(std::filesystem::path(tryExec).filename().string()))
        addProgram(command.programs, tryExec);
    return command;
}

} // namespace tolvenary
