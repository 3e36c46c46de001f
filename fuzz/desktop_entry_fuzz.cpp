#include "fuzz/require.h"
#include "platform/desktop/application_matcher.h"
#include "platform/desktop/desktop_command.h"

#include <algorithm>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

using namespace tolvenary;
using tolvenary::fuzz::require;

namespace
{

DesktopEntry hostileEntry(FuzzedDataProvider &input)
{
    DesktopEntry entry;
    entry.id = input.ConsumeRandomLengthString(24);
    const std::string exec = input.ConsumeRandomLengthString(128);
    entry.command = parseDesktopCommand(exec, input.ConsumeRandomLengthString(24));
    return entry;
}

/// No name is empty, none is a path, none stands twice.
void checkPrograms(std::vector<std::string> programs)
{
    std::sort(programs.begin(), programs.end());
    require(std::adjacent_find(programs.begin(), programs.end()) == programs.end());
    for (const std::string &program : programs)
        require(!program.empty() && program.find('/') == std::string::npos);
}

void checkCommand(const DesktopCommand &command)
{
    checkPrograms(command.programs);
    for (const std::string &option : command.options)
        require(option.starts_with('-') && option.find('%') == std::string::npos);
    for (const std::string &operand : command.operands)
        require(!operand.starts_with('-') && operand.find('%') == std::string::npos);
}

Process hostileProcess(FuzzedDataProvider &input)
{
    Process process;
    process.executable = input.ConsumeRandomLengthString(32);
    const std::size_t count = input.ConsumeIntegralInRange(0U, 4U);
    for (std::size_t i = 0; i < count; ++i)
        process.arguments.push_back(input.ConsumeRandomLengthString(24));
    return process;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    return setenv("PATH", "/bin", 1); // every name is looked for in each of its directories
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    std::vector<DesktopEntry> entries;
    const std::size_t count = input.ConsumeIntegralInRange(1U, 4U);
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(hostileEntry(input));
        checkCommand(entries.back().command);
    }
    const ApplicationMatcher matcher(entries);
    const auto isOurs = [&](const DesktopEntry *entry) {
        return entry == nullptr || (entry >= entries.data() && entry < entries.data() + entries.size());
    };
    require(isOurs(matcher.entryOf(hostileProcess(input))));
    if (const auto unit = applicationUnitOf(input.ConsumeRemainingBytesAsString())) {
        require(!unit->candidateIDs.empty() && !unit->name.empty());
        require(isOurs(matcher.entryOf(*unit)));
    }
    return 0;
}
