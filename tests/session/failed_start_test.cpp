#include "tests/session/failing_platform.h"
#include "tests/session/mix_bed.h"

#include <QCoro/QCoroTask>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

/// The real platform, but for one call that fails: what was already made by then must be gone afterwards.
class FailedStart : public testing::TestWithParam<FailingCall>
{
};

TEST_P(FailedStart, leavesNoNodeBehind)
{
    MixBed bed;
    bed.launch();
    FailingPlatform platform(bed.platform(), GetParam());
    MixCoordinator mix(platform);
    mix.refreshBlackHole();
    QCoro::waitFor(mix.refreshApps());
    mix.setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    QCoro::waitFor(mix.start());
    const std::string status = mix.property("status").toString().toStdString();
    std::printf("  %s\n", status.c_str());
    EXPECT_THAT(status, testing::StartsWith("Start failed [" + FailingPlatform::stage(GetParam()) + "]: "));
    EXPECT_FALSE(mix.property("isRunning").toBool());
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty(); },
                                 std::chrono::seconds(2)))
        << testing::PrintToString(MixBed::nodesOfProgram(SoundGraph::read()).size()) << " nodes left";
}

INSTANTIATE_TEST_SUITE_P(Calls, FailedStart, testing::ValuesIn(FailingPlatform::allCalls),
                         [](const auto &call) { return FailingPlatform::name(call.param); });

} // namespace tolvenary::session
