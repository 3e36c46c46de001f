#include "platform/desktop/process_program.h"

#include <gmock/gmock.h>

namespace tolvenary
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProcessProgram, aProcessIsKnownByItsExecutable)
{
    EXPECT_THAT(programsOf({1, 0, "/usr/lib/player/player", {"anything", "else"}, ""}), ElementsAre("player"));
}

TEST(ProcessProgram, aProcessWhoseExecutableIsHiddenIsKnownByItsFirstArgument)
{
    EXPECT_THAT(programsOf({1, 0, "", {"/usr/bin/vault", "--open"}, ""}), ElementsAre("vault"));
}

TEST(ProcessProgram, anInterpreterIsKnownByItsScriptToo)
{
    EXPECT_THAT(programsOf({1, 0, "/usr/bin/python3.11", {"python3", "-u", "/usr/bin/tweaks", "x"}, ""}),
                ElementsAre("python3.11", "tweaks"));
}

TEST(ProcessProgram, aShellsCommandIsNoScript)
{
    EXPECT_THAT(programsOf({1, 0, "/usr/bin/dash", {"sh", "-c", "player"}, ""}), ElementsAre("dash"));
    EXPECT_THAT(programsOf({1, 0, "/usr/bin/bash", {"bash", "-i"}, ""}), ElementsAre("bash"));
}

TEST(ProcessProgram, aKernelThreadRunsNoProgram)
{
    EXPECT_THAT(programsOf({2, 0, "", {}, ""}), IsEmpty());
}

TEST(ProcessProgram, versionsOfAnInterpreterAreTheInterpreter)
{
    EXPECT_TRUE(isInterpreter("python3.11"));
    EXPECT_TRUE(isInterpreter("bash"));
    EXPECT_FALSE(isInterpreter("player"));
    EXPECT_FALSE(isInterpreter("python3-player"));
    EXPECT_FALSE(isInterpreter("0123"));
    EXPECT_FALSE(isInterpreter(""));
}

} // namespace

} // namespace tolvenary
