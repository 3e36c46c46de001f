#include "platform/pipewire/heard_nodes.h"
#include "tests/platform/pipewire/graph_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// The streams that a tap of our process hears.
std::set<GlobalId> tapped(const GraphBuilder &built)
{
    TapWish wish;
    wish.excludedProcesses = {ownProcess};
    return tappedStreams(built.graph, wish);
}

TEST(HeardNodes, aSinksMonitorIsNoMicrophone)
{
    GraphBuilder built;
    built.sink("speakers", {"FL", "FR"});
    built.graph.defaultSourceName = "speakers";
    EXPECT_EQ(microphoneOf(built.graph, {}), nullptr);
}

TEST(HeardNodes, theDevicesOwnOtherHalfIsNoMicrophone)
{
    GraphBuilder built;
    built.sink("device", {"FL", "FR"}, "loopback-1");
    built.source("device.source", {"FL", "FR"}, "loopback-1");
    built.graph.defaultSourceName = "device.source";
    const LinkWishes wishes{{{built.outputNode(), "device"}}, {}, {}};
    EXPECT_EQ(microphoneOf(built.graph, wishes), nullptr);
}

TEST(HeardNodes, aSourceRemappedFromTheDevicesMonitorIsNoMicrophone)
{
    GraphBuilder built;
    const GlobalId device = built.sink("device", {"FL", "FR"});
    const GlobalId capture = built.node("remap-in", "Stream/Input/Audio", "remap");
    built.link(built.monitor(device, "FL"), built.port(capture, PortDirection::input, "FL"));
    built.source("remapped", {"FL", "FR"}, "remap");
    built.graph.defaultSourceName = "remapped";
    const LinkWishes wishes{{{built.outputNode(), "device"}}, {}, {}};
    EXPECT_EQ(microphoneOf(built.graph, wishes), nullptr);
}

TEST(HeardNodes, aMicrophoneBehindANoiseFilterIsAMicrophone)
{
    GraphBuilder built;
    const GlobalId hardware = built.source("hardware", {"MONO"});
    const GlobalId capture = built.node("filter-in", "Stream/Input/Audio", "filter");
    built.link(built.out(hardware, "MONO"), built.port(capture, PortDirection::input, "MONO"));
    const GlobalId filtered = built.source("filtered", {"MONO"}, "filter");
    built.graph.defaultSourceName = "filtered";
    const LinkWishes wishes{{{built.outputNode(), "device"}}, {}, {}};
    ASSERT_NE(microphoneOf(built.graph, wishes), nullptr);
    EXPECT_EQ(microphoneOf(built.graph, wishes)->id, filtered);
}

TEST(HeardNodes, anExcludedProcessIsNotTapped)
{
    GraphBuilder built;
    built.stream(ownProcess, {"FL", "FR"});
    EXPECT_THAT(tapped(built), IsEmpty());
}

TEST(HeardNodes, whoAsksForOneProcessHearsAllItsStreamsAndNobodyElses)
{
    GraphBuilder built;
    const GlobalId first = built.stream(player, {"MONO"});
    built.stream(ownProcess, {"MONO"});
    built.stream(3, {"MONO"});
    const GlobalId second = built.stream(player, {"MONO"});
    built.node("nobody's", "Stream/Output/Audio");
    TapWish wish;
    wish.onlyProcess = player;
    EXPECT_THAT(tappedStreams(built.graph, wish), UnorderedElementsAre(first, second));
}

TEST(HeardNodes, aStreamOfTheWantedProcessThatHasPassedThroughASinkIsNotHeardTwice)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("effects", {"FL", "FR"}, "chain");
    built.stream(player, {"FL", "FR"}, "chain");
    ASSERT_NE(sink, 0U);
    TapWish wish;
    wish.onlyProcess = player;
    EXPECT_THAT(tappedStreams(built.graph, wish), IsEmpty());
}

TEST(HeardNodes, aTapThatExcludesNobodyTapsEveryProcess)
{
    GraphBuilder built;
    const GlobalId ours = built.stream(ownProcess, {"MONO"});
    const GlobalId theirs = built.stream(player, {"MONO"});
    EXPECT_THAT(tappedStreams(built.graph, {}), UnorderedElementsAre(ours, theirs));
}

TEST(HeardNodes, aRecordingStreamIsNotTapped)
{
    GraphBuilder built;
    const GlobalId recorder = built.node("recorder", "Stream/Input/Audio", "", built.client(player));
    built.port(recorder, PortDirection::input, "FL");
    EXPECT_THAT(tapped(built), IsEmpty());
}

TEST(HeardNodes, whatPlaysTheDeviceBackIsNotTapped)
{
    GraphBuilder built;
    const GlobalId device = built.sink("device", {"FL", "FR"});
    const GlobalId capture = built.node("loopback-in", "Stream/Input/Audio", "monitoring");
    built.link(built.monitor(device, "FL"), built.port(capture, PortDirection::input, "FL"));
    built.stream(player, {"FL", "FR"}, "monitoring");
    EXPECT_THAT(tapped(built), IsEmpty());
}

TEST(HeardNodes, whatAVirtualSinkPlaysOnIsTappedOnlyWhereItWentIn)
{
    GraphBuilder built;
    const GlobalId effects = built.sink("effects", {"FL", "FR"}, "chain");
    const GlobalId stream = built.stream(player, {"FL", "FR"});
    built.link(built.out(stream, "FL"), built.in(effects, "FL"));
    built.stream(3, {"FL", "FR"}, "chain");
    EXPECT_THAT(tapped(built), ElementsAre(stream));
}

TEST(HeardNodes, aSourcePlayedAloudIsTapped)
{
    GraphBuilder built;
    const GlobalId lineIn = built.source("line-in", {"MONO"});
    const GlobalId capture = built.node("loopback-in", "Stream/Input/Audio", "line");
    built.link(built.out(lineIn, "MONO"), built.port(capture, PortDirection::input, "MONO"));
    const GlobalId aloud = built.stream(player, {"MONO"}, "line");
    EXPECT_THAT(tapped(built), ElementsAre(aloud));
}

/// An echo canceller, whose source is the default one.
struct EchoCanceller {
    GraphBuilder built;
    GlobalId device = built.source("device.source", {"MONO"}, "device");
    GlobalId microphone = built.source("microphone", {"MONO"});
    GlobalId capture = built.node("ec-capture", "Stream/Input/Audio", "ec");
    GlobalId source = built.source("ec-source", {"MONO"}, "ec");
    GlobalId sink = built.sink("ec-sink", {"MONO"}, "ec");
    GlobalId playback = built.stream(player, {"MONO"}, "ec");
    GlobalId into = built.port(capture, PortDirection::input, "MONO");
    GlobalId output = built.outputNode();

    EchoCanceller()
    {
        built.sink("device", {"MONO"}, "device");
        built.graph.defaultSourceName = "ec-source";
    }
    const GraphNode *microphoneOfMix() const { return microphoneOf(built.graph, {{{output, "device"}}, {}, {}}); }
};

TEST(HeardNodes, aMicrophoneWithItsEchoCancelledIsOneAlsoWhileTheDeviceIsPlayedAloud)
{
    EchoCanceller ec;
    ec.built.link(ec.built.out(ec.microphone, "MONO"), ec.into);
    ec.built.link(ec.built.out(ec.device, "MONO"), ec.built.in(ec.sink, "MONO"));
    ASSERT_NE(ec.microphoneOfMix(), nullptr);
    EXPECT_EQ(ec.microphoneOfMix()->id, ec.source);
    EXPECT_THAT(tapped(ec.built), IsEmpty()) << "it plays what was captured before";
}

TEST(HeardNodes, anEchoCancellerThatCapturesTheDeviceIsNoMicrophone)
{
    EchoCanceller ec;
    ec.built.link(ec.built.out(ec.device, "MONO"), ec.into);
    EXPECT_EQ(ec.microphoneOfMix(), nullptr);
}

TEST(HeardNodes, aLoopbackIsTappedNoSoonerThanSomethingPlaysIntoIt)
{
    GraphBuilder built;
    const GlobalId lineIn = built.source("line-in", {"MONO"});
    const GlobalId capture = built.node("loopback-in", "Stream/Input/Audio", "line");
    const GlobalId into = built.port(capture, PortDirection::input, "MONO");
    const GlobalId aloud = built.stream(player, {"MONO"}, "line");
    EXPECT_THAT(tapped(built), IsEmpty());
    built.link(built.out(lineIn, "MONO"), into);
    EXPECT_THAT(tapped(built), ElementsAre(aloud));
}

TEST(HeardNodes, aStreamThatIsAloneInItsGroupIsTapped)
{
    GraphBuilder built;
    const GlobalId alone = built.stream(player, {"MONO"}, "alone");
    EXPECT_THAT(tapped(built), ElementsAre(alone));
}

TEST(HeardNodes, aStreamIsTappedNoSoonerThanItsPropertiesAreKnown)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(player, {"MONO"});
    built.graph.nodes[stream].isWhole = false;
    EXPECT_THAT(tapped(built), IsEmpty());
    built.graph.nodes[stream].isWhole = true;
    EXPECT_THAT(tapped(built), ElementsAre(stream));
}

TEST(HeardNodes, aRingOfLoopbacksEnds)
{
    GraphBuilder built;
    const GlobalId first = built.stream(player, {"FL"}, "ring");
    const GlobalId second = built.node("ring-in", "Stream/Input/Audio", "ring");
    built.link(built.out(first, "FL"), built.port(second, PortDirection::input, "FL"));
    EXPECT_THAT(tapped(built), ElementsAre(first));
}

} // namespace
} // namespace tolvenary
