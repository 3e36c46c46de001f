#include "platform/desktop/application_records.h"

#include "platform/desktop/process_claims.h"
#include "platform/desktop/process_program.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace tolvenary
{

namespace
{

bool equalButForCase(const std::string &a, const std::string &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

bool contains(const std::vector<std::string> &names, const std::string &name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whether a client plays for the application that started it: it has its name, or runs its program.
bool playsFor(const AudioClient &client, const ProcessClaim &process, const ProcessClaim &main)
{
    const auto &entry = *main.entry;
    if (equalButForCase(client.applicationName, entry.name) || contains(entry.command.programs, client.binary))
        return true;
    const auto programs = programsOf(*process.process);
    const auto mainPrograms = programsOf(*main.process);
    return std::any_of(programs.begin(), programs.end(), [&](const std::string &program) {
        return !isInterpreter(program) && contains(mainPrograms, program);
    });
}

/// Whether a record of the desktop's applications already stands for this client.
bool isListed(const AudioClient &client, const ProcessClaims &claims)
{
    const auto *process = claims.find(client.processID);
    if (!process)
        return false;
    if (process->entry && (process->runsItsProgram || process->main == client.processID))
        return true;
    const auto *ancestor = process;
    for (std::size_t steps = 0; ancestor && steps < claims.all().size(); ++steps) {
        if (ancestor->entry && playsFor(client, *process, *claims.find(ancestor->main)))
            return true;
        ancestor = claims.parentOf(*ancestor);
    }
    return false;
}

SCRunningApplication recordOf(const AudioClient &client, const ProcessClaims &claims)
{
    SCRunningApplication record{client.applicationName, client.processID, client.binary};
    const auto *process = claims.find(client.processID);
    if (!record.bundleIdentifier.empty() || !process)
        return record;
    if (const auto programs = programsOf(*process->process); !programs.empty())
        record.bundleIdentifier = programs.back();
    return record;
}

} // namespace

std::vector<SCRunningApplication> applicationRecords(std::span<const Process> processes,
                                                     std::span<const DesktopEntry> entries,
                                                     std::span<const AudioClient> clients)
{
    const ApplicationMatcher matcher(entries);
    const ProcessClaims claims(processes, matcher);
    std::vector<SCRunningApplication> records;
    std::set<std::int32_t> listed;
    for (const auto &[id, claim] : claims.all()) {
        if (claim.entry && claim.main == id && listed.insert(id).second)
            records.push_back({claim.entry->name, id, claim.entry->id});
    }
    for (const auto &client : clients) {
        if (!isListed(client, claims) && listed.insert(client.processID).second)
            records.push_back(recordOf(client, claims));
    }
    return records;
}

} // namespace tolvenary
