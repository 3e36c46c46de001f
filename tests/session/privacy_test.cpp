#include "tests/session/mix_bed.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Whether anybody but the test's own players is linked to the microphone.
bool isMicrophoneOpen(const SoundGraph &graph)
{
    const std::uint32_t microphone = graph.node("microphone")->id;
    return std::ranges::any_of(graph.links, [&](const GraphLink &link) { return link.outputNode == microphone; });
}

/// What the desktop's mixers and privacy indicators are told: the recording streams.
std::string recordingStreams()
{
    return runToEnd({"pactl", "list", "source-outputs"});
}

constexpr const char *sign = "com.tolvenary.microphone.sign";

/// Which of all that have ever been there; empty while none is.
std::string serialOfSign(const SoundGraph &graph)
{
    const GraphNode *node = graph.node(sign);
    return node == nullptr ? std::string() : node->properties.at("object.serial");
}

MixBedOptions withPulseServer()
{
    MixBedOptions options;
    options.configuration.pulse = true;
    return options;
}

} // namespace

TEST(Privacy, theMicrophoneIsOpenBetweenStartAndStopAndAtNoOtherTime)
{
    MixBed bed;
    bed.launch();
    EXPECT_TRUE(MixBed::nodesOfProgram(SoundGraph::read()).empty());
    EXPECT_FALSE(isMicrophoneOpen(SoundGraph::read()));
    for (int run = 0; run < 2; ++run) {
        bed.run();
        EXPECT_TRUE(isMicrophoneOpen(SoundGraph::read()));
        bed.stop();
        EXPECT_TRUE(bed.waitForGraph(
            [](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty() && !isMicrophoneOpen(graph); }));
    }
}

TEST(Privacy, aStartThatFailsLeavesTheMicrophoneClosed)
{
    MixBed bed;
    bed.launch();
    bed.mix().setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    bed.device()->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }));
    EXPECT_THAT(bed.pressStart(), testing::StartsWith("Start failed [output-engine]"));
    EXPECT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty() && !isMicrophoneOpen(graph); }));
}

TEST(Privacy, theDesktopSeesThatTheMicrophoneIsInUseForAsLongAsItIs)
{
    using testing::HasSubstr;
    MixBed bed(withPulseServer());
    bed.launch();
    EXPECT_EQ(recordingStreams(), "");
    bed.run();
    EXPECT_TRUE(bed.waitFor([] { return !recordingStreams().empty(); }));
    const std::string during = recordingStreams();
    EXPECT_THAT(during, HasSubstr("application.name = \"Tolvenary\""));
    EXPECT_THAT(during, HasSubstr("application.id = \"com.tolvenary.app\""));
    EXPECT_THAT(during, HasSubstr("Corked: no"));
    EXPECT_THAT(runToEnd({"pactl", "list", "short", "sources"}),
                HasSubstr("microphone\tPipeWire\tfloat32le 1ch 48000Hz\tRUNNING"));
    bed.stop();
    EXPECT_TRUE(bed.waitFor([] { return recordingStreams().empty(); }));
}

/// As mixers do where their user ends a recording.
TEST(Privacy, theDesktopSeesItAgainWhenSomebodyHasEndedTheSignAndNotTheMix)
{
    MixBed bed(withPulseServer());
    bed.run();
    ASSERT_TRUE(bed.waitFor([] { return !recordingStreams().empty(); }));
    ASSERT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > 2 * 48000; })); // not just begun
    const std::string before = serialOfSign(SoundGraph::read());
    ASSERT_FALSE(before.empty());
    runToEnd({"pw-cli", "destroy", std::to_string(SoundGraph::read().node(sign)->id)});
    EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
        const std::string now = serialOfSign(graph);
        return !now.empty() && now != before;
    }));
    EXPECT_TRUE(bed.waitFor([] { return !recordingStreams().empty(); }));
    const quint64 frames = bed.mix().micFrames();
    EXPECT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > frames; }));
}

TEST(Privacy, theDesktopSeesItAgainWhenTheSoundServerHasBeenRestarted)
{
    MixBed bed(withPulseServer());
    bed.run();
    ASSERT_TRUE(bed.waitFor([] { return !recordingStreams().empty(); }));
    bed.unplugAll();
    bed.session().restartSoundServers();
    bed.plugAll();
    EXPECT_TRUE(bed.waitFor([] { return !recordingStreams().empty(); }));
}

} // namespace tolvenary::session
