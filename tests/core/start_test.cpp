#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAreArray;

namespace
{

class StartTest : public CoordinatorTest
{
};

} // namespace

TEST_F(StartTest, withNothingPickedAndNoDeviceTheApplicationIsAskedForFirst)
{
    start();
    EXPECT_EQ(status(), "Pick an app first.");
    EXPECT_FALSE(coordinator().isRunning());
}

TEST_F(StartTest, aPickedProcessThatIsNoLongerListedIsAskedForAgain)
{
    pickAll();
    coordinator().setSelectedAppID(music + 1);
    start();
    EXPECT_EQ(status(), "Pick an app first.");
}

TEST_F(StartTest, withoutADeviceTheDeviceIsMissing)
{
    setApplications({{"Music", music, "music"}});
    refreshApps();
    coordinator().setSelectedAppID(music);
    start();
    EXPECT_EQ(status(), "BlackHole device not found.");
}

TEST_F(StartTest, aRefusedStartTouchesNothingElse)
{
    pickAllAndStart();
    inputCycle(0.1F, 10);
    passTicks(1);
    coordinator().teardown();
    coordinator().setSelectedAppID(std::nullopt);
    calls().clearLog();
    start();
    EXPECT_EQ(status(), "Pick an app first.");
    EXPECT_EQ(coordinator().micFrames(), 10U);

    coordinator().setSelectedAppID(music);
    coordinator().setSelectedBlackHole(std::nullopt);
    start();
    EXPECT_EQ(status(), "BlackHole device not found.");
    EXPECT_EQ(coordinator().micFrames(), 10U);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(StartTest, aCompleteStartRunsAndSaysWhatToDoNext)
{
    pickAllAndStart();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(status(), "Running. In Discord, set Input to BlackHole 2ch.");
    EXPECT_TRUE(m_platform.audioUnits().outputIsRunning());
    EXPECT_TRUE(m_platform.audioUnits().inputIsRunning());
    EXPECT_EQ(m_platform.ioProcs().running(), 1U);
    EXPECT_EQ(m_platform.timers().scheduled(), 1U);
}

TEST_F(StartTest, aSecondStartWhileRunningChangesNothing)
{
    pickAllAndStart();
    inputCycle(0.1F, 10);
    passTicks(1);
    coordinator().setStatus(QStringLiteral("as it was"));
    coordinator().setSelectedAppID(std::nullopt);
    calls().clearLog();
    start();
    EXPECT_EQ(status(), "as it was");
    EXPECT_EQ(coordinator().micFrames(), 10U);
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(StartTest, theStepsComeInTheirOrder)
{
    pickAll();
    calls().clearLog();
    start();
    const std::vector<std::string> expected{
        "settle",
        "authorizationStatusForMediaType",
        "CGPreflightScreenCaptureAccess",
        "makeOutputUnit",
        "AudioUnitSetProperty",
        "AudioUnitGetProperty",
        "AudioOutputUnitStart output",
        "makeInputUnit",
        "AudioOutputUnitStart input",
        "AudioObjectGetPropertyData id2p",
        "AudioHardwareCreateProcessTap",
        "AudioObjectGetPropertyData tuid",
        "AudioHardwareCreateAggregateDevice",
        "AudioObjectGetPropertyData sfmt",
        "AudioDeviceCreateIOProcIDWithBlock",
        "AudioDeviceStart",
        "scheduledTimerWithTimeInterval",
    };
    EXPECT_THAT(calls().log(), ElementsAreArray(expected));
}

TEST_F(StartTest, thatItRunsIsToldWhenTheMeterTicksAlready)
{
    pickAll();
    std::vector<std::size_t> timers;
    QObject::connect(&coordinator(), &MixCoordinator::isRunningChanged, &coordinator(),
                     [&] { timers.push_back(m_platform.timers().scheduled()); });
    start();
    EXPECT_THAT(timers, testing::ElementsAre(1U));
}

TEST_F(StartTest, aTextWithPlaceholdersInItIsShownAsItIs)
{
    addDevice(blackHole, "BlackHole %1 %2");
    coordinator().refreshBlackHole();
    setApplications({{"%1", music, "%2"}});
    refreshApps();
    coordinator().setSelectedAppID(music);
    start();
    EXPECT_EQ(status(), "Running. In Discord, set Input to BlackHole %1 %2.");
    passTicks(1);
    EXPECT_EQ(status(), "Running → BlackHole %1 %2  mic:0  app:0 frames");
}

namespace
{

using Calls = std::vector<std::string>;

struct FailingStep {
    const char *name;
    const char *operation;
    const char *stage;
    Calls releases;
};

const Calls outputReleased{"AudioOutputUnitStop output", "~AudioOutputUnit"};
const Calls enginesReleased{"AudioOutputUnitStop input", "~AudioInputUnit", "AudioOutputUnitStop output",
                            "~AudioOutputUnit"};

Calls operator+(Calls first, const Calls &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Calls tapReleased = Calls{"AudioHardwareDestroyProcessTap"} + enginesReleased;
const Calls aggregateReleased = Calls{"AudioHardwareDestroyAggregateDevice"} + tapReleased;
const Calls ioProcReleased = Calls{"AudioDeviceDestroyIOProcID"} + aggregateReleased;

class FailedStartTest : public CoordinatorTest, public testing::WithParamInterface<FailingStep>
{
};

} // namespace

TEST_P(FailedStartTest, itNamesItsStageAndReleasesWhatWasMadeInReverse)
{
    pickAll();
    calls().fail(GetParam().operation, -77);
    std::vector<bool> heldWhenTold;
    QObject::connect(&coordinator(), &MixCoordinator::statusChanged, &coordinator(),
                     [&] { heldWhenTold.push_back(m_platform.holdsAnything()); });
    start();
    EXPECT_TRUE(status().starts_with("Start failed [" + std::string(GetParam().stage) + "]: ")) << status();
    EXPECT_THAT(heldWhenTold, testing::ElementsAre(false)) << "first everything is released, then it is told";
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(m_platform.holdsAnything());

    const Calls &log = calls().log();
    const auto failed = std::find(log.begin(), log.end(), GetParam().operation);
    EXPECT_THAT(Calls(failed + 1, log.end()), ElementsAreArray(GetParam().releases));
}

TEST_P(FailedStartTest, theNextStartWorks)
{
    pickAll();
    calls().failCall(GetParam().operation, 1, -77);
    start();
    ASSERT_FALSE(coordinator().isRunning());
    start();
    EXPECT_TRUE(coordinator().isRunning());
    ASSERT_TRUE(inputCycle(0.25F, 64));
    ASSERT_TRUE(tapCycle(0.5F, 64));
    EXPECT_THAT(outputCycle(64), testing::Each(0.75F));
}

INSTANTIATE_TEST_SUITE_P(
    Step, FailedStartTest,
    testing::Values(FailingStep{"outputBinding", "AudioUnitSetProperty", "output-engine", {"~AudioOutputUnit"}},
                    FailingStep{"outputReadBack", "AudioUnitGetProperty", "output-engine", {"~AudioOutputUnit"}},
                    FailingStep{"outputStart", "AudioOutputUnitStart output", "output-engine", {"~AudioOutputUnit"}},
                    FailingStep{"inputStart", "AudioOutputUnitStart input", "capture-engine",
                                Calls{"~AudioInputUnit"} + outputReleased},
                    FailingStep{"processTranslation", "AudioObjectGetPropertyData id2p", "app-capture",
                                enginesReleased},
                    FailingStep{"processTap", "AudioHardwareCreateProcessTap", "app-capture", enginesReleased},
                    FailingStep{"tapUID", "AudioObjectGetPropertyData tuid", "app-capture", tapReleased},
                    FailingStep{"aggregateDevice", "AudioHardwareCreateAggregateDevice", "app-capture", tapReleased},
                    FailingStep{"streamFormat", "AudioObjectGetPropertyData sfmt", "app-capture", aggregateReleased},
                    FailingStep{"ioProc", "AudioDeviceCreateIOProcIDWithBlock", "app-capture", aggregateReleased},
                    FailingStep{"ioStart", "AudioDeviceStart", "app-capture", ioProcReleased}),
    [](const auto &param) { return std::string(param.param.name); });
