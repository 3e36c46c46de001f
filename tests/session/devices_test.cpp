#include "tests/session/mix_bed.h"
#include "tests/session/support/source_fit.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Every tone that a test here plays, so that each is measured beside the others.
const std::vector<double> allTones = {600, 997, 1499};

double heardInDevice(MixBed &bed, double frequency)
{
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    bed.record(recorder, 9600);
    const Recording recording = bed.record(recorder, 24000);
    const auto found = std::find(allTones.begin(), allTones.end(), frequency);
    return toneAmplitudes(recording.part(0, recording.longestUnbroken()), recording.rate,
                          allTones)[static_cast<std::size_t>(found - allTones.begin())];
}

bool isPlayedInto(const SoundGraph &graph, const std::string &sink)
{
    const GraphNode *node = graph.node(sink);
    const auto ours = MixBed::nodesOfProgram(graph);
    return node != nullptr && std::any_of(graph.links.begin(), graph.links.end(), [&](const GraphLink &link) {
               return link.inputNode == node->id && std::any_of(ours.begin(), ours.end(), [&](const GraphNode &one) {
                          return one.id == link.outputNode;
                      });
           });
}

} // namespace

TEST(DefaultSource, isFollowedWhenItChangesDuringTheRun)
{
    MixBed bed;
    bed.run();
    const auto other = makeMicrophone(bed.session(), "FL FR", "other-microphone");
    const auto voice = speakInto(bed.session(), "other-microphone", {"FL=tone:600:0.3", "FR=tone:600:0.3"});
    bed.session().chooseDefault("default.configured.audio.source", "other-microphone");
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "other-microphone"; }));
    EXPECT_NEAR(heardInDevice(bed, 600), 0.3, 0.003);
    EXPECT_NEAR(heardInDevice(bed, 997), 0, 1e-4);
}

TEST(DefaultSource, thatBecomesTheDeviceItselfSilencesTheMicrophoneOnly)
{
    MixBed bed;
    bed.run();
    bed.session().chooseDefault("default.configured.audio.source", "blackhole_2ch.source");
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "blackhole_2ch.source"; }));
    EXPECT_NEAR(heardInDevice(bed, 1499), 0.2, 0.003) << "a mix that hears itself would grow";
    EXPECT_NEAR(heardInDevice(bed, 997), 0, 1e-4);
}

TEST(Device, thatGoesAwayAndComesBackIsFedAgainAndNothingElseMeanwhile)
{
    MixBed bed;
    bed.run();
    bed.device()->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }));
    bed.waitFor([] { return false; }, std::chrono::milliseconds(500));
    EXPECT_FALSE(isPlayedInto(SoundGraph::read(), "speakers"));
    EXPECT_TRUE(bed.isRunning());
    bed.device() = makeBlackHole(bed.session());
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return isPlayedInto(graph, "blackhole_2ch"); }));
    EXPECT_NEAR(heardInDevice(bed, 997), 0.25, 0.003);
    EXPECT_NEAR(heardInDevice(bed, 1499), 0.2, 0.003);
}

TEST(Device, whatPlaysItAloudIsNotMixedInAgain)
{
    MixBed bed;
    bed.run();
    const auto headphones = bed.session().start(
        {"pw-loopback", "--capture-props={ node.name=listen-in target.object=blackhole_2ch.source }",
         "--playback-props={ node.name=listen-out target.object=speakers }"});
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        const GraphNode *in = graph.node("listen-in");
        const GraphNode *device = graph.node("blackhole_2ch.source");
        return in != nullptr && std::any_of(graph.links.begin(), graph.links.end(), [&](const GraphLink &link) {
                   return link.inputNode == in->id && link.outputNode == device->id;
               });
    }));
    EXPECT_NEAR(heardInDevice(bed, 997), 0.25, 0.003);
    EXPECT_NEAR(heardInDevice(bed, 1499), 0.2, 0.003);
}

TEST(Device, theShippedOneIsFoundAndFed)
{
    MixBedOptions options{.device = false};
    options.configuration.shippedDevice = true;
    MixBed bed(options);
    bed.run();
    EXPECT_NEAR(heardInDevice(bed, 997), 0.25, 0.003);
    EXPECT_EQ(SoundGraph::read().defaultNode("default.audio.source"), "microphone");
}

TEST(Devices, areListedInTheServersOrderAndOnlyWhereTheyTakeOutput)
{
    MixBed bed({.device = false});
    const auto wide = makeBlackHole(bed.session(), DeviceKind::nullSink, "BLACKHOLE 64ch", "wide");
    const auto spaced = makeBlackHole(bed.session(), DeviceKind::nullSink, "Black Hole", "spaced");
    const auto source = makeMicrophone(bed.session(), "MONO", "blackhole-source");
    const auto usual = makeBlackHole(bed.session());
    const auto names = [&] {
        bed.launch();
        std::vector<std::string> found;
        for (const QVariant &row : bed.mix().property("blackHoleDevices").toList())
            found.push_back(row.toMap()["name"].toString().toStdString());
        return found;
    };
    EXPECT_THAT(names(), testing::ElementsAre("BLACKHOLE 64ch", "BlackHole 2ch"));
    EXPECT_EQ(bed.mix().property("selectedBlackHole").toMap()["name"].toString(), "BLACKHOLE 64ch");
    wide->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("wide") == nullptr; }));
    EXPECT_THAT(names(), testing::ElementsAre("BlackHole 2ch"));
    EXPECT_EQ(bed.mix().property("selectedBlackHole").toMap()["name"].toString(), "BlackHole 2ch");
}

} // namespace tolvenary::session
