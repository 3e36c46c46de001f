#include "tests/session/listening.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Twice, a second apart: a mix that hears itself grows.
bool isHeardInDevice(MixBed &bed, const Heard &wanted)
{
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    const bool isHeard = becomesHeard(bed, recorder, wanted);
    bed.record(recorder, 48000);
    return isHeard && becomesHeard(bed, recorder, wanted);
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
    EXPECT_TRUE(isHeardInDevice(bed, {0, 0.3, 0.2}));
}

TEST(DefaultSource, thatBecomesTheDeviceItselfSilencesTheMicrophoneOnly)
{
    MixBed bed;
    bed.run();
    bed.session().chooseDefault("default.configured.audio.source", "blackhole_2ch.source");
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "blackhole_2ch.source"; }));
    EXPECT_TRUE(isHeardInDevice(bed, {0, 0, 0.2}));
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
    EXPECT_TRUE(isHeardInDevice(bed, theWholeMix));
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
    EXPECT_TRUE(isHeardInDevice(bed, theWholeMix));
}

TEST(Device, theShippedOneIsFoundAndFed)
{
    MixBedOptions options{.device = false};
    options.configuration.shippedDevice = true;
    MixBed bed(options);
    bed.run();
    EXPECT_TRUE(isHeardInDevice(bed, theWholeMix));
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
