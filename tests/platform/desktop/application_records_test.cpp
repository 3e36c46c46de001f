#include "platform/desktop/application_records.h"

#include <gmock/gmock.h>

namespace tolvenary
{

namespace
{

using testing::IsEmpty;

using Records = std::vector<SCRunningApplication>;

const std::vector<DesktopEntry> entries = {
    {"org.example.Browser", "Browser", {{"browser"}, {}, {}}},
    {"org.example.Player", "Player", {{"player"}, {}, {}}},
    {"org.example.Terminal", "Terminal", {{"terminal"}, {}, {}}},
};

const std::string terminalUnit = "0::/app.slice/app-org.example.Terminal-1.scope\n";
const std::string browserUnit = "0::/app.slice/app-gnome-org.example.Browser-2.scope\n";

Process process(std::int32_t id, std::int32_t parent, const std::string &program, const std::string &cgroup = "0::/\n")
{
    return {id, parent, "/usr/bin/" + program, {program}, cgroup};
}

Records records(const std::vector<Process> &processes, const std::vector<AudioClient> &clients = {})
{
    return applicationRecords(processes, entries, clients);
}

const SCRunningApplication browser10 = {"Browser", 10, "org.example.Browser"};
const SCRunningApplication terminal10 = {"Terminal", 10, "org.example.Terminal"};

TEST(ApplicationRecords, aSessionWithoutApplicationsIsAnEmptyList)
{
    EXPECT_THAT(records({}), IsEmpty());
    EXPECT_THAT(records({process(1, 0, "init"), process(2, 1, "bash")}), IsEmpty());
}

TEST(ApplicationRecords, aSilentApplicationIsListedUnderItsEntrysNameAndId)
{
    EXPECT_EQ(records({process(10, 1, "browser")}), Records{browser10});
}

TEST(ApplicationRecords, helpersAreFoldedIntoTheTopmostProcess)
{
    const std::vector<Process> family = {process(10, 1, "browser"), process(11, 10, "browser"),
                                         process(12, 11, "broker"), process(13, 12, "browser")};
    EXPECT_EQ(records(family), Records{browser10});
    EXPECT_EQ(records(family, {{13, "Browser", "browser"}, {11, "anything", ""}}), Records{browser10});
}

TEST(ApplicationRecords, aHelperWithALowerIdThanItsParentIsFoldedAllTheSame)
{
    const SCRunningApplication browser900 = {"Browser", 900, "org.example.Browser"};
    EXPECT_EQ(records({process(5, 900, "browser"), process(900, 1, "browser")}), Records{browser900});
}

TEST(ApplicationRecords, twoInstancesAreTwoRecords)
{
    const SCRunningApplication browser20 = {"Browser", 20, "org.example.Browser"};
    EXPECT_EQ(records({process(10, 1, "browser"), process(20, 1, "browser")}), (Records{browser10, browser20}));
}

TEST(ApplicationRecords, aUnitsHelpersThatLostTheirParentAreFolded)
{
    EXPECT_EQ(records({process(8, 1, "crash-watch", browserUnit), process(10, 1, "browser", browserUnit),
                       process(11, 10, "renderer", browserUnit), process(12, 8, "sub-watch", browserUnit)}),
              Records{browser10});
}

TEST(ApplicationRecords, theUnitNamesTheApplicationWhateverItsProgram)
{
    EXPECT_EQ(records({process(10, 1, "launcher-script", browserUnit)}), Records{browser10});
}

TEST(ApplicationRecords, aStreamOfAHelperWithTheApplicationsNameAddsNoRecord)
{
    EXPECT_EQ(records({process(10, 1, "browser"), process(11, 10, "web-process")}, {{11, "BROWSER", "web-process"}}),
              Records{browser10});
}

TEST(ApplicationRecords, aStreamOfAnotherProgramStartedFromAnApplicationIsARecordOfItsOwn)
{
    EXPECT_EQ(records({process(10, 1, "terminal", terminalUnit), process(11, 10, "bash", terminalUnit),
                       process(12, 11, "pw-play", terminalUnit)},
                      {{12, "pw-play", "pw-play"}}),
              (Records{terminal10, {"pw-play", 12, "pw-play"}}));
}

TEST(ApplicationRecords, anApplicationStartedFromATerminalHasItsOwnEntry)
{
    EXPECT_EQ(records({process(10, 1, "terminal", terminalUnit), process(11, 10, "bash", terminalUnit),
                       process(12, 11, "player", terminalUnit), process(13, 12, "decoder", terminalUnit)},
                      {{13, "Player", "decoder"}, {12, "x", "player"}}),
              (Records{terminal10, {"Player", 12, "org.example.Player"}}));
}

TEST(ApplicationRecords, theInterpreterAloneMakesNoFamily)
{
    const std::vector<DesktopEntry> tool = {{"tool", "Tool", {{"python3"}, {"/opt/tool.py"}, {}}}};
    const std::vector<Process> processes = {{10, 1, "/usr/bin/python3", {"python3", "/opt/tool.py"}, ""},
                                            {11, 10, "/usr/bin/python3", {"python3", "/srv/song.py"}, ""}};
    const std::vector<AudioClient> clients = {{11, "song", ""}};
    EXPECT_EQ(applicationRecords(processes, tool, clients), (Records{{"Tool", 10, "tool"}, {"song", 11, "song.py"}}));
}

TEST(ApplicationRecords, aStreamOfAListedMainProcessAddsNoRecord)
{
    EXPECT_EQ(records({process(10, 1, "browser")}, {{10, "some stream", "browser"}}), Records{browser10});
}

TEST(ApplicationRecords, aStreamWithoutAnEntryBearsTheClientsName)
{
    EXPECT_EQ(records({process(30, 1, "game")}, {{30, "Great Game", "game-bin"}, {31, "Remote", ""}}),
              (Records{{"Great Game", 30, "game-bin"}, {"Remote", 31, ""}}));
}

TEST(ApplicationRecords, withoutABinaryFromTheSoundServerTheProcessNamesIt)
{
    EXPECT_EQ(records({process(30, 1, "game")}, {{30, "Great Game", ""}}), (Records{{"Great Game", 30, "game"}}));
}

TEST(ApplicationRecords, noProcessComesTwice)
{
    EXPECT_EQ(records({process(10, 1, "browser")}, {{30, "A", "a"}, {30, "B", "b"}, {10, "A", "a"}}),
              (Records{browser10, {"A", 30, "a"}}));
}

TEST(ApplicationRecords, streamsKeepTheirOrderBehindTheApplications)
{
    EXPECT_EQ(records({process(50, 1, "browser")}, {{40, "b", ""}, {30, "a", ""}}),
              (Records{{"Browser", 50, "org.example.Browser"}, {"b", 40, ""}, {"a", 30, ""}}));
}

TEST(ApplicationRecords, aRingOfParentsEnds)
{
    const std::vector<Process> ring = {process(10, 11, "browser"), process(11, 10, "browser"), process(12, 12, "x")};
    EXPECT_LE(records(ring, {{12, "x", "x"}}).size(), 2U);
    EXPECT_THAT(records(ring, {{12, "x", "x"}}), testing::Contains(SCRunningApplication{"x", 12, "x"}));
}

} // namespace

} // namespace tolvenary
