#include "platform/desktop/application_matcher.h"

#include "platform/desktop/process_program.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace tolvenary
{

namespace
{

/// How well a process's arguments fit an entry's command; greater is better. Nothing when an argument that identifies
/// the application is missing.
std::optional<std::tuple<std::ptrdiff_t, std::ptrdiff_t>> fit(const DesktopCommand &command, const Process &process)
{
    const auto given = [&](const std::string &argument) {
        return std::find(process.arguments.begin(), process.arguments.end(), argument) != process.arguments.end();
    };
    if (!std::all_of(command.operands.begin(), command.operands.end(), given))
        return std::nullopt;
    const auto options = std::count_if(command.options.begin(), command.options.end(), given);
    const auto present = std::ssize(command.operands) + options;
    return std::tuple(present, options - std::ssize(command.options));
}

} // namespace

ApplicationMatcher::ApplicationMatcher(std::span<const DesktopEntry> entries)
{
    for (const auto &entry : entries) {
        m_byID.emplace(entry.id, &entry);
        for (const auto &program : entry.command.programs)
            m_byProgram.emplace(program, &entry);
    }
}

const DesktopEntry *ApplicationMatcher::entryOf(const ApplicationUnit &unit) const
{
    for (const auto &id : unit.candidateIDs) {
        if (const auto found = m_byID.find(id); found != m_byID.end())
            return found->second;
    }
    return nullptr;
}

const DesktopEntry *ApplicationMatcher::entryOf(const Process &process) const
{
    const DesktopEntry *best = nullptr;
    std::optional<std::tuple<std::ptrdiff_t, std::ptrdiff_t>> bestFit;
    for (const auto &program : programsOf(process)) {
        const auto [first, last] = m_byProgram.equal_range(program);
        for (auto candidate = first; candidate != last; ++candidate) {
            const auto *entry = candidate->second;
            const auto candidateFit = fit(entry->command, process);
            if (!candidateFit)
                continue;
            if (!best || candidateFit > bestFit || (candidateFit == bestFit && entry->id < best->id)) {
                best = entry;
                bestFit = candidateFit;
            }
        }
    }
    return best;
}

} // namespace tolvenary
