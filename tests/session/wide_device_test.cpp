#include "tests/session/chat_application.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The wider device that the packages carry as an example, beside the usual one as it is meant; and what is left of both
// when a user takes them away again.

namespace tolvenary::session
{

namespace
{

constexpr const char *wideSink = "blackhole_16ch";
constexpr const char *wideSource = "blackhole_16ch.source";

SessionConfiguration withBothDevices()
{
    return {.pulse = true, .shippedDevice = true, .wideDevice = true};
}

/// "node:port" of each channel in which the wide source is heard.
std::vector<std::string> heardChannels()
{
    std::vector<std::string> ports;
    for (int channel = 0; channel < 16; ++channel)
        ports.push_back(std::string(wideSource) + ":capture_AUX" + std::to_string(channel));
    return ports;
}

/// How many channels a node of this name takes or gives, its monitor's aside.
std::ptrdiff_t channelsOf(const SoundGraph &graph, const std::string &name)
{
    const GraphNode *node = graph.node(name);
    return node == nullptr
               ? 0
               : std::ranges::count_if(graph.portsOf(node->id), [](const GraphPort &port) { return !port.isMonitor; });
}

std::vector<std::string> devicesIn(const SoundGraph &graph)
{
    std::vector<std::string> names;
    for (const GraphNode &node : graph.nodes)
        if (node.name.starts_with("blackhole_") && !node.name.ends_with(".link"))
            names.push_back(node.name);
    return names;
}

/// The server reads the devices from its files in one go, this one last.
bool hasUsualDevice(const SoundGraph &graph)
{
    return graph.port("blackhole_2ch.source:capture_FR") != nullptr;
}

void pickDevice(MixBed &bed, const std::string &name)
{
    for (const BlackHoleDevice &device : bed.mix().blackHoleDevices())
        if (device.name == name)
            bed.mix().setSelectedBlackHole(device);
}

/// The mix runs into the wide device.
class WideDeviceInUse : public testing::Test
{
  protected:
    WideDeviceInUse() : m_bed({.configuration = withBothDevices(), .device = false})
    {
        m_bed.launch();
        pickDevice(m_bed, "BlackHole 16ch");
        m_bed.run();
    }

    MixBed &bed() { return m_bed; }

  private:
    MixBed m_bed;
};

} // namespace

TEST(WideDevice, isASinkAndASourceOfSixteenChannelsThatIsNoMonitor)
{
    PrivateSession session(withBothDevices());
    EXPECT_TRUE(session.waitForGraph([](const SoundGraph &graph) {
        return channelsOf(graph, wideSink) == 16 && channelsOf(graph, wideSource) == 16;
    }));
    const std::optional<ListedSource> listed = listedSource(wideSource);
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->description, "BlackHole 16ch");
    EXPECT_FALSE(listed->isMonitor) << "chat applications would not list it";
}

TEST_F(WideDeviceInUse, isHeardOnItsFirstTwoChannelsAndNowhereElse)
{
    ASSERT_THAT(bed().status(), testing::HasSubstr("BlackHole 16ch"));
    Recorder recorder(bed().session(), heardChannels());
    EXPECT_TRUE(becomesHeard(bed(), recorder, theWholeMix));
    const Recording recording = bed().record(recorder, 24000);
    const Stretch whole = recording.longestUnbroken();
    const Heard right = heardIn(recording.part(1, whole), recording.rate);
    EXPECT_TRUE(isLevel(right.microphone, theWholeMix.microphone)) << right.microphone;
    EXPECT_TRUE(isLevel(right.application, theWholeMix.application)) << right.application;
    for (std::size_t channel = 2; channel < recording.tracks.size(); ++channel)
        EXPECT_THAT(recording.tracks[channel], testing::Each(0.0F)) << "channel " << channel;
}

TEST_F(WideDeviceInUse, isHeardByAChatApplicationInStereo)
{
    const ChatApplication chat(bed().session(), wideSource);
    EXPECT_TRUE(comesToHearTheMix(bed(), chat));
}

TEST_F(WideDeviceInUse, passesOnWhatSomebodyPlaysIntoItsLastChannel)
{
    link(bed().session(), applicationPort("player", "FL"), std::string(wideSink) + ":playback_AUX15");
    Recorder recorder(bed().session(), {heardChannels().back()});
    EXPECT_TRUE(becomesHeard(bed(), recorder, {.application = theWholeMix.application}));
}

TEST(WideDevice, isNeitherDefaultAlsoAfterARestartOfTheServer)
{
    SessionConfiguration configuration = withBothDevices();
    configuration.speakers = "";
    PrivateSession session(configuration);
    const auto isSettled = [](const SoundGraph &graph) {
        return channelsOf(graph, wideSource) == 16 && hasUsualDevice(graph) &&
               graph.defaultNode("default.audio.sink") == "no_speakers" &&
               graph.defaultNode("default.audio.source") != wideSource;
    };
    EXPECT_TRUE(session.waitForGraph(isSettled));
    session.restartSoundServers();
    EXPECT_TRUE(session.waitForGraph(isSettled));
}

TEST(ShippedDevices, areGoneWhenTheyWereRemovedAndTheServerWasRestarted)
{
    PrivateSession session(withBothDevices());
    ASSERT_TRUE(session.waitForGraph(hasUsualDevice));
    EXPECT_THAT(devicesIn(SoundGraph::read()),
                testing::UnorderedElementsAre("blackhole_2ch", "blackhole_2ch.source", wideSink, wideSource));
    runToEnd({TOLVENARY_INSTALLER, "remove", "16ch"});
    session.restartSoundServers();
    ASSERT_TRUE(session.waitForGraph(hasUsualDevice));
    EXPECT_THAT(devicesIn(SoundGraph::read()), testing::UnorderedElementsAre("blackhole_2ch", "blackhole_2ch.source"));
    runToEnd({TOLVENARY_INSTALLER, "remove"});
    session.restartSoundServers();
    EXPECT_THAT(devicesIn(SoundGraph::read()), testing::IsEmpty());
}

} // namespace tolvenary::session
