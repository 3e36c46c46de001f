#include "platform/desktop/desktop_command.h"
#include "tests/platform/desktop/temporary_folder.h"

#include <gmock/gmock.h>

namespace tolvenary
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DesktopCommand, theProgramIsKnownByItsFileName)
{
    EXPECT_THAT(parseDesktopCommand("/opt/player/bin/player %U", "").programs, ElementsAre("player"));
    EXPECT_THAT(parseDesktopCommand("\"/opt/my player/player\" %f", "").programs, ElementsAre("player"));
}

TEST(DesktopCommand, aProgramThatIsALinkIsKnownByItsTargetToo)
{
    const TemporaryFolder folder;
    const auto target = folder.writeProgram("share/Talk");
    const auto link = folder.path() / "talk";
    std::filesystem::create_symlink(target, link);
    EXPECT_THAT(parseDesktopCommand(link.string(), "").programs, ElementsAre("talk", "Talk"));
}

TEST(DesktopCommand, fieldCodesAreNoArguments)
{
    const auto command = parseDesktopCommand("player --open=%u --new play %F %i", "");
    EXPECT_THAT(command.options, ElementsAre("--new"));
    EXPECT_THAT(command.operands, ElementsAre("play"));
}

TEST(DesktopCommand, anEnvironmentBeforeTheProgramIsPassedOver)
{
    const auto command = parseDesktopCommand("env -i LANG=C B=2 player --quiet", "");
    EXPECT_THAT(command.programs, ElementsAre("player"));
    EXPECT_THAT(command.options, ElementsAre("--quiet"));
    EXPECT_THAT(parseDesktopCommand("/usr/bin/env B=2 player", "").programs, ElementsAre("player"));
    EXPECT_THAT(parseDesktopCommand("env B=2", "").programs, IsEmpty());
}

TEST(DesktopCommand, anInterpreterNeedsAScript)
{
    EXPECT_THAT(parseDesktopCommand("python3", "").programs, IsEmpty());
    const auto script = parseDesktopCommand("python3 /opt/tool/main.py", "");
    EXPECT_THAT(script.programs, testing::Contains("python3"));
    EXPECT_THAT(script.operands, ElementsAre("/opt/tool/main.py"));
}

TEST(DesktopCommand, theProgramOfTryExecCountsToo)
{
    EXPECT_THAT(parseDesktopCommand("start-player", "/opt/player").programs, ElementsAre("start-player", "player"));
    EXPECT_THAT(parseDesktopCommand("", "player").programs, ElementsAre("player"));
    EXPECT_THAT(parseDesktopCommand("player", "sh").programs, ElementsAre("player"));
}

TEST(DesktopCommand, aLineThatCannotBeReadMatchesNothing)
{
    EXPECT_THAT(parseDesktopCommand("player 'unfinished", "").programs, IsEmpty());
    EXPECT_THAT(parseDesktopCommand("", "").programs, IsEmpty());
}

} // namespace

} // namespace tolvenary
