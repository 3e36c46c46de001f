#include "tests/session/chat_application.h"
#include "tests/session/support/source_fit.h"
#include "tests/session/support/tone_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The device as users install it, and what a chat application has of it.

namespace tolvenary::session
{

namespace
{

constexpr const char *sink = "blackhole_2ch";
constexpr const char *source = "blackhole_2ch.source";

SessionConfiguration withDevice()
{
    return {.pulse = true, .shippedDevice = true};
}

/// The mix runs into the shipped device.
class ShippedDevice : public testing::Test
{
  protected:
    ShippedDevice() : m_bed({.configuration = withDevice(), .device = false}) { m_bed.run(); }

    MixBed &bed() { return m_bed; }

    /// Whether a chat application that joins now comes to hear voice and music at the levels that they are played at.
    bool friendsHearTheMix() { return comesToHearTheMix(m_bed, ChatApplication(m_bed.session(), source)); }

  private:
    MixBed m_bed;
};

bool hasWholeDevice(const SoundGraph &graph)
{
    return graph.port(std::string(sink) + ":playback_FR") != nullptr &&
           graph.port(std::string(source) + ":capture_FR") != nullptr;
}

} // namespace

TEST_F(ShippedDevice, isHeardByWhoRecordsItsSourceByName)
{
    EXPECT_TRUE(friendsHearTheMix());
}

TEST_F(ShippedDevice, isListedUnderTheNameThatTheWindowTellsAndIsNoMonitor)
{
    const std::optional<ListedSource> listed = listedSource(source);
    ASSERT_TRUE(listed);
    EXPECT_FALSE(listed->isMonitor) << "chat applications would not list it";
    // The hint of the window and the status after a start name the device as the coordinator does.
    EXPECT_EQ(bed().mix().property("selectedBlackHole").toMap()["name"].toString().toStdString(), listed->description);
}

TEST_F(ShippedDevice, isHeardTheSameWhateverItsSinksSliderAndMuteButtonSay)
{
    runToEnd({"pactl", "set-sink-volume", sink, "50%"});
    ASSERT_THAT(runToEnd({"pactl", "get-sink-volume", sink}), testing::HasSubstr(" 50% "));
    EXPECT_TRUE(friendsHearTheMix()) << "at half";
    runToEnd({"pactl", "set-sink-mute", sink, "1"});
    ASSERT_EQ(runToEnd({"pactl", "get-sink-mute", sink}), "Mute: yes\n");
    EXPECT_TRUE(friendsHearTheMix()) << "muted";
}

TEST_F(ShippedDevice, deliversInTheCycleInWhichItIsPlayedInto)
{
    Recorder recorder(bed().session(),
                      {"microphone:capture_MONO", applicationPort("player", "FL"), bed().monitor("FL")});
    // A late wake-up of the machine delays the sound until the players have skipped what it left behind.
    SourceFit fit;
    const bool isWhole = bed().waitFor([&] {
        const Recording recording = bed().record(recorder, 24000);
        const Stretch whole = recording.longestUnbroken();
        fit = fitSources(recording.part(2, whole), {recording.part(0, whole), recording.part(1, whole)});
        return fit.largestResidue < 1e-4;
    });
    EXPECT_TRUE(isWhole) << "what is late is no multiple of its source: " << fit.largestResidue;
    EXPECT_NEAR(fit.gains[0], 1, 1e-3);
    EXPECT_NEAR(fit.gains[1], 1, 1e-3);
}

TEST_F(ShippedDevice, isNeitherDefaultBesideOtherDevices)
{
    EXPECT_EQ(SoundGraph::read().defaultNode("default.audio.sink"), "speakers");
    EXPECT_EQ(SoundGraph::read().defaultNode("default.audio.source"), "microphone");
}

TEST_F(ShippedDevice, asADefaultMicrophoneIsNotMixedIntoItself)
{
    bed().session().chooseDefault("default.configured.audio.source", source);
    ASSERT_TRUE(bed().waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == source; }));
    Recorder recorder(bed().session(), {bed().monitor("FL")});
    bed().record(recorder, 9600);
    const Recording recording = bed().record(recorder, 24000);
    const auto levels = toneAmplitudes(recording.part(0, recording.longestUnbroken()), recording.rate, {997, 1499});
    EXPECT_NEAR(levels[0], 0, 1e-4);
    EXPECT_NEAR(levels[1], 0.2, 0.003) << "a mix that hears itself would grow";
}

TEST(ShippedDeviceAlone, isNeitherDefaultAlsoAfterARestartOfTheServer)
{
    SessionConfiguration configuration = withDevice();
    configuration.speakers = "";
    PrivateSession session(configuration);
    const auto isSettled = [](const SoundGraph &graph) {
        return hasWholeDevice(graph) && graph.defaultNode("default.audio.sink") == "no_speakers" &&
               graph.defaultNode("default.audio.source") != source;
    };
    EXPECT_TRUE(session.waitForGraph(isSettled));
    session.restartSoundServers();
    EXPECT_TRUE(session.waitForGraph(isSettled));
    const std::optional<ListedSource> listed = listedSource(source);
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->description, "BlackHole 2ch");
}

TEST(ShippedDeviceAlone, isNoRecordingThatMicrophoneIndicatorsWouldLightFor)
{
    PrivateSession session(withDevice());
    ASSERT_TRUE(session.waitForGraph([](const SoundGraph &graph) {
        const GraphPort *from = graph.port("blackhole_2ch:monitor_FR");
        const GraphPort *into = graph.port("blackhole_2ch.link:input_FR");
        return from != nullptr && into != nullptr && graph.link(from->id, into->id) != nullptr;
    }));
    EXPECT_EQ(runToEnd({"pactl", "list", "source-outputs"}), "");
}

} // namespace tolvenary::session
