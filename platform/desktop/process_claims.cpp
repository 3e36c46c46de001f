#include "platform/desktop/process_claims.h"

#include <utility>

namespace tolvenary
{

ProcessClaims::ProcessClaims(std::span<const Process> processes, const ApplicationMatcher &matcher)
{
    for (const auto &process : processes) {
        auto &claim = m_claims[process.id];
        claim.process = &process;
        claim.unit = applicationUnitOf(process.cgroup);
    }
    for (auto &[id, processClaim] : m_claims)
        claim(processClaim, matcher);
    for (auto &[id, processClaim] : m_claims)
        processClaim.main = topmost(processClaim);
    uniteUnits();
}

const ProcessClaim *ProcessClaims::find(std::int32_t processID) const
{
    const auto found = m_claims.find(processID);
    return found == m_claims.end() ? nullptr : &found->second;
}

const ProcessClaim *ProcessClaims::parentOf(const ProcessClaim &claim) const
{
    return find(claim.process->parent);
}

void ProcessClaims::claim(ProcessClaim &claim, const ApplicationMatcher &matcher) const
{
    const auto *byUnit = claim.unit ? matcher.entryOf(*claim.unit) : nullptr;
    const auto *byProgram = matcher.entryOf(*claim.process);
    const auto *parent = parentOf(claim);
    // What has an entry of its own inside a unit was started by the application, as a player from a terminal.
    const bool startedInside = parent && claim.unit && parent->unit == claim.unit;
    claim.entry = byUnit && !(startedInside && byProgram) ? byUnit : byProgram;
    claim.runsItsProgram = claim.entry && claim.entry == byProgram;
}

std::int32_t ProcessClaims::topmost(const ProcessClaim &claim) const
{
    auto top = claim.process->id;
    const auto *ancestor = parentOf(claim);
    // Ids may be reused while the table is read: the count keeps a ring of parents from going round for ever.
    for (std::size_t steps = 0; ancestor && steps < m_claims.size(); ++steps) {
        if (ancestor->entry == claim.entry)
            top = ancestor->process->id;
        ancestor = parentOf(*ancestor);
    }
    return top;
}

void ProcessClaims::uniteUnits()
{
    std::map<std::pair<std::string, const DesktopEntry *>, std::int32_t> mains;
    for (const auto &[id, claim] : m_claims) {
        if (!claim.unit || !claim.entry || claim.main != id)
            continue;
        const auto [main, isFirst] = mains.try_emplace({claim.unit->name, claim.entry}, id);
        if (!isFirst && claim.runsItsProgram && !m_claims.at(main->second).runsItsProgram)
            main->second = id;
    }
    for (auto &[id, claim] : m_claims) {
        const auto &top = m_claims.at(claim.main);
        if (!claim.entry || !top.unit)
            continue;
        if (const auto main = mains.find({top.unit->name, claim.entry}); main != mains.end())
            claim.main = main->second;
    }
}

} // namespace tolvenary
