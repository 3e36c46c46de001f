#include "tests/session/mix_bed.h"
#include "tests/session/stepped_platform.h"

#include <QCoro/QCoroTask>
#include <array>
#include <cerrno>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

/// A step of a start that fails, and the stage to which the status counts it.
struct FailingStep {
    const char *testName;
    const char *step;
    OSStatus status;
    const char *stage;
};

constexpr std::array failingSteps{
    FailingStep{"microphonePermission", "ask for the microphone", -EPERM, "mic-permission"},
    FailingStep{"screenRecordingPermission", "ask for the screen", -EPERM, "screen-recording-permission"},
    FailingStep{"bindOutput", "bind the output", -EBUSY, "output-engine"},
    FailingStep{"startOutput", "start the output", -EIO, "output-engine"},
    FailingStep{"startInput", "start the input", -EIO, "capture-engine"},
    FailingStep{"createTap", "create the tap", -EPERM, "app-capture"},
    FailingStep{"createAggregate", "create the aggregate", -ENOMEM, "app-capture"},
    FailingStep{"createIOProc", "create the callback", -ENODEV, "app-capture"},
    FailingStep{"startDevice", "start the tap", -EIO, "app-capture"},
};

/// What was already made when the step fails must be gone afterwards.
class FailedStart : public testing::TestWithParam<FailingStep>
{
};

TEST_P(FailedStart, leavesNoNodeBehind)
{
    MixBed bed;
    bed.launch();
    SteppedPlatform platform(
        bed.platform(), [](const std::string &step) { return step == GetParam().step ? GetParam().status : noErr; });
    MixCoordinator mix(platform);
    mix.refreshBlackHole();
    QCoro::waitFor(mix.refreshApps());
    mix.setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    QCoro::waitFor(mix.start());
    const std::string status = mix.property("status").toString().toStdString();
    std::printf("  %s\n", status.c_str());
    EXPECT_THAT(status, testing::StartsWith(std::string("Start failed [") + GetParam().stage + "]: "));
    EXPECT_FALSE(mix.property("isRunning").toBool());
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty(); },
                                 std::chrono::seconds(2)))
        << testing::PrintToString(MixBed::nodesOfProgram(SoundGraph::read()).size()) << " nodes left";
}

INSTANTIATE_TEST_SUITE_P(Steps, FailedStart, testing::ValuesIn(failingSteps),
                         [](const auto &tested) { return std::string(tested.param.testName); });

} // namespace tolvenary::session
