#include "platform/desktop/process_table.h"
#include "tests/platform/desktop/fixture_proc.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace tolvenary
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::int32_t> idsIn(const FixtureProc &proc)
{
    std::vector<std::int32_t> ids;
    for (const auto &process : readProcesses(proc.path(), geteuid()))
        ids.push_back(process.id);
    return ids;
}

TEST(ProcessTable, everythingThatTheKernelShowsIsRead)
{
    const FixtureProc proc;
    proc.add({70, 7, "/usr/bin/player", {"player", "", "a b"}, "0::/app-player-1.scope\n"});
    const auto processes = readProcesses(proc.path(), geteuid());
    ASSERT_EQ(processes.size(), 1U);
    EXPECT_EQ(processes[0].id, 70);
    EXPECT_EQ(processes[0].parent, 7);
    EXPECT_EQ(processes[0].executable, "/usr/bin/player");
    EXPECT_THAT(processes[0].arguments, ElementsAre("player", "", "a b"));
    EXPECT_EQ(processes[0].cgroup, "0::/app-player-1.scope\n");
}

TEST(ProcessTable, processesComeInTheOrderOfTheirIds)
{
    const FixtureProc proc;
    for (const auto id : {100, 9, 20})
        proc.add({id, 1, "/bin/x", {}, ""});
    EXPECT_THAT(idsIn(proc), ElementsAre(9, 20, 100));
}

TEST(ProcessTable, aProgramReplacedByAnUpgradeKeepsItsName)
{
    const FixtureProc proc;
    proc.add({3, 1, "/usr/bin/player (deleted)", {}, ""});
    EXPECT_EQ(readProcesses(proc.path(), geteuid()).at(0).executable, "/usr/bin/player");
}

// A folder can be opened and not be read, as can the file of a process that has just ended.
TEST(ProcessTable, whatCannotBeReadOnIsEmpty)
{
    const FixtureProc proc;
    proc.add({3, 1, "/bin/x", {}, ""});
    for (const char *file : {"cmdline", "cgroup", "status"}) {
        std::filesystem::remove(proc.path() / "3" / file);
        std::filesystem::create_directory(proc.path() / "3" / file);
        EXPECT_NO_THROW(readProcesses(proc.path(), geteuid())) << file;
    }
    EXPECT_THAT(idsIn(proc), IsEmpty());
}

TEST(ProcessTable, otherUsersAndTheDeadAreLeftOut)
{
    const FixtureProc proc;
    proc.add({3, 1, "/bin/x", {}, ""}, geteuid() + 1);
    proc.add({4, 1, "/bin/x", {}, ""}, geteuid(), 'Z');
    proc.add({5, 1, "/bin/x", {}, ""});
    EXPECT_THAT(idsIn(proc), ElementsAre(5));
}

TEST(ProcessTable, aProcessThatCannotBeReadIsSkipped)
{
    const FixtureProc proc;
    std::filesystem::create_directories(proc.path() / "41"); // ended while the table was read
    proc.folder().write("42/status", "Name:\tx\nState:\tS\n");
    proc.folder().write("self/status", "");
    proc.folder().write("43", "a file");
    proc.add({44, 1, "", {}, ""});
    EXPECT_THAT(idsIn(proc), ElementsAre(44));
}

TEST(ProcessTable, noProcFileSystemIsNoProcess)
{
    EXPECT_THAT(readProcesses("/nonexistent", geteuid()), IsEmpty());
}

TEST(ProcessTable, thisTestIsFoundInTheKernelsOwnTable)
{
    const auto processes = readProcesses("/proc", getuid());
    const auto self =
        std::find_if(processes.begin(), processes.end(), [](const Process &process) { return process.id == getpid(); });
    ASSERT_NE(self, processes.end());
    EXPECT_EQ(self->parent, getppid());
    EXPECT_EQ(self->executable, std::filesystem::read_symlink("/proc/self/exe"));
    EXPECT_FALSE(self->arguments.empty());
    EXPECT_FALSE(self->cgroup.empty());
}

} // namespace

} // namespace tolvenary
