#include "tests/session/mix_bed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

const std::string noMicrophone = "Start failed [capture-engine]: No microphone input available. Set the system default "
                                 "input to your mic. (Tolvenary 12)";

} // namespace

TEST(Failures, withoutASourceTheMicrophoneIsMissed)
{
    MixBed bed({.microphone = false});
    EXPECT_EQ(bed.start(), noMicrophone);
    EXPECT_FALSE(bed.isRunning());
}

TEST(Failures, theDevicesOwnOtherHalfIsNoMicrophone)
{
    MixBed bed({.microphone = false});
    bed.session().chooseDefault("default.configured.audio.source", "blackhole_2ch.source");
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "blackhole_2ch.source"; }));
    EXPECT_EQ(bed.start(), noMicrophone);
}

TEST(Failures, withoutADeviceItIsNotFound)
{
    MixBed bed({.device = false});
    EXPECT_EQ(bed.start(), "BlackHole device not found.");
    EXPECT_FALSE(bed.isRunning());
}

TEST(Failures, withoutAPickAnAppMustBePicked)
{
    MixBed bed;
    bed.launch();
    EXPECT_EQ(bed.pressStart(), "Pick an app first.");
}

TEST(Failures, aDeviceThatHasGoneRefuses)
{
    MixBed bed;
    bed.launch();
    bed.mix().setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    bed.device()->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }));
    EXPECT_THAT(bed.pressStart(), testing::MatchesRegex("Start failed \\[output-engine\\]: Failed to bind output to "
                                                        "BlackHole \\(OSStatus -([0-9]+)\\)\\. "
                                                        "\\(NSOSStatusErrorDomain -[0-9]+\\)"));
    EXPECT_FALSE(bed.isRunning());
    EXPECT_TRUE(MixBed::nodesOfProgram(SoundGraph::read()).empty());
}

} // namespace tolvenary::session
