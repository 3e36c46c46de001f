#include "platform/pipewire/link_plan.h"
#include "tests/platform/pipewire/graph_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

std::set<GraphLink> tapLinks(const GraphBuilder &built, GlobalId tap)
{
    return planLinks(built.graph, {{}, {}, {{tap, {ownProcess}, {}, true}}});
}

TEST(LinkPlan, theOutputPlaysLeftAndRightIntoTheDevice)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("device", {"FR", "FL"});
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}),
                UnorderedElementsAre(GraphLink{built.out(output, "FL"), built.in(sink, "FL")},
                                     GraphLink{built.out(output, "FR"), built.in(sink, "FR")}));
}

TEST(LinkPlan, aDeviceWithoutPositionsIsPlayedIntoItsFirstTwoPorts)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("device", {"AUX0", "AUX1", "AUX2"});
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}),
                UnorderedElementsAre(GraphLink{built.out(output, "FL"), built.in(sink, "AUX0")},
                                     GraphLink{built.out(output, "FR"), built.in(sink, "AUX1")}));
}

TEST(LinkPlan, aMonoDeviceGetsBothSidesOnce)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("device", {"MONO"});
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}),
                UnorderedElementsAre(GraphLink{built.out(output, "MONO"), built.in(sink, "MONO")}));
}

TEST(LinkPlan, theOutputNeverFallsBackToAnotherDevice)
{
    GraphBuilder built;
    built.sink("speakers", {"FL", "FR"});
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}), IsEmpty());
}

TEST(LinkPlan, aDeviceThatCameBackIsPlayedIntoInsteadOfItsPredecessor)
{
    GraphBuilder built;
    built.sink("device", {"FL", "FR"});
    const GlobalId successor = built.sink("device", {"FL", "FR"});
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}),
                UnorderedElementsAre(GraphLink{built.out(output, "FL"), built.in(successor, "FL")},
                                     GraphLink{built.out(output, "FR"), built.in(successor, "FR")}));
}

TEST(LinkPlan, aDeviceIsPlayedIntoAtItsSinkWhoeverElseHasItsName)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("device", {"FL", "FR"});
    built.source("device", {"FL", "FR"});
    built.node("device", "Stream/Input/Audio");
    const GlobalId output = built.outputNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {}, {}}),
                UnorderedElementsAre(GraphLink{built.out(output, "FL"), built.in(sink, "FL")},
                                     GraphLink{built.out(output, "FR"), built.in(sink, "FR")}));
}

TEST(LinkPlan, theMicrophoneIsTheSourceWhoeverElseHasItsName)
{
    GraphBuilder built;
    const GlobalId source = built.source("mic", {"MONO"});
    built.sink("mic", {"MONO"});
    built.node("mic", "Stream/Input/Audio");
    built.graph.defaultSourceName = "mic";
    const GlobalId input = built.inputNode({"input_1"});
    EXPECT_THAT(planLinks(built.graph, {{}, {{input, true}}, {}}),
                UnorderedElementsAre(GraphLink{built.out(source, "MONO"), built.in(input, "input_1")}));
}

TEST(LinkPlan, everyCaptureNodeRunsBeforeTheOutput)
{
    GraphBuilder built;
    const GlobalId output = built.outputNode();
    const GlobalId input = built.inputNode({"input_1"});
    const GlobalId tap = built.tapNode();
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {{input, true}}, {{tap, {}, {}, true}}}),
                UnorderedElementsAre(GraphLink{built.out(input, "order"), built.in(output, "order")},
                                     GraphLink{built.out(tap, "order"), built.in(output, "order")}));
}

TEST(LinkPlan, theMicrophoneIsTheDefaultSource)
{
    GraphBuilder built;
    const GlobalId source = built.source("mic", {"FL", "FR"});
    built.source("other", {"FL", "FR"});
    built.graph.defaultSourceName = "mic";
    const GlobalId input = built.inputNode({"input_1", "input_2"});
    EXPECT_THAT(planLinks(built.graph, {{}, {{input, true}}, {}}),
                UnorderedElementsAre(GraphLink{built.out(source, "FL"), built.in(input, "input_1")},
                                     GraphLink{built.out(source, "FR"), built.in(input, "input_2")}));
}

TEST(LinkPlan, theMicrophoneOfBeforeStaysAtTheOtherSetOfPorts)
{
    GraphBuilder built;
    const GlobalId before = built.source("mic", {"MONO"});
    const GlobalId source = built.source("other", {"MONO"});
    built.graph.defaultSourceName = "other";
    const GlobalId input = built.inputNode({"input_1", "other_1"});
    EXPECT_THAT(planLinks(built.graph, {{}, {{input, true, 1, before}}, {}}),
                UnorderedElementsAre(GraphLink{built.out(source, "MONO"), built.in(input, "other_1")},
                                     GraphLink{built.out(before, "MONO"), built.in(input, "input_1")}));
}

TEST(LinkPlan, whoHasTheIdOfAMicrophoneThatHasGoneIsNotHeardInItsPlace)
{
    GraphBuilder built;
    const GlobalId before = built.source("mic", {"MONO"});
    const GlobalId source = built.source("other", {"MONO"});
    built.graph.defaultSourceName = "other";
    const GlobalId input = built.inputNode({"input_1", "other_1"});
    const std::uint64_t serial = built.graph.nodes[before].serial;
    built.graph.nodes[before].serial = 1000;
    EXPECT_THAT(planLinks(built.graph, {{}, {{input, true, 1, serial}}, {}}),
                UnorderedElementsAre(GraphLink{built.out(source, "MONO"), built.in(input, "other_1")}));
}

TEST(LinkPlan, aMicrophoneThatIsHeldIsNotLinkedAndTheOrderStays)
{
    GraphBuilder built;
    built.source("microphone", {"MONO"});
    built.graph.defaultSourceName = "microphone";
    const GlobalId output = built.outputNode();
    const GlobalId input = built.inputNode({"input_1"});
    InputWish wish{input};
    wish.isMicrophoneHeld = true;
    EXPECT_THAT(planLinks(built.graph, {{{output, "device"}}, {wish}, {}}),
                UnorderedElementsAre(GraphLink{built.out(input, "order"), built.in(output, "order")}));
}

TEST(LinkPlan, aMonoMicrophoneThatComesLaterIsHeardOnAllChannels)
{
    GraphBuilder built;
    const GlobalId source = built.source("mic", {"MONO"});
    built.graph.defaultSourceName = "mic";
    const GlobalId input = built.inputNode({"input_1", "input_2"});
    EXPECT_THAT(planLinks(built.graph, {{}, {{input, true}}, {}}),
                UnorderedElementsAre(GraphLink{built.out(source, "MONO"), built.in(input, "input_1")},
                                     GraphLink{built.out(source, "MONO"), built.in(input, "input_2")}));
}

TEST(LinkPlan, aStreamThatIsTriedPlaysIntoTheProbeAndNotIntoTheTap)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(player, {"FL", "FR"});
    const GlobalId tap = built.tapNode();
    const GlobalId probe = built.node("probe", "");
    const GlobalId input = built.port(probe, PortDirection::input, "MONO");
    const LinkWishes wishes{{}, {}, {{tap, {}, {stream}, false}}, {{probe, stream}}};
    EXPECT_THAT(planLinks(built.graph, wishes), UnorderedElementsAre(GraphLink{built.out(stream, "FL"), input}));
}

TEST(LinkPlan, aStreamThatTheTapIsNotToHearIsNotLinked)
{
    GraphBuilder built;
    built.stream(ownProcess, {"FL", "FR"});
    EXPECT_THAT(tapLinks(built, built.tapNode()), IsEmpty());
}

TEST(LinkPlan, aMonoStreamIsTappedOnBothSides)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(player, {"MONO"});
    const GlobalId tap = built.tapNode();
    EXPECT_THAT(tapLinks(built, tap), UnorderedElementsAre(GraphLink{built.out(stream, "MONO"), built.in(tap, "FL")},
                                                           GraphLink{built.out(stream, "MONO"), built.in(tap, "FR")}));
}

TEST(LinkPlan, aSurroundStreamIsFoldedDownChannelByChannel)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(player, {"FL", "FR", "FC", "LFE", "SL", "SR"});
    const GlobalId tap = built.tapNode();
    EXPECT_THAT(tapLinks(built, tap), UnorderedElementsAre(GraphLink{built.out(stream, "FL"), built.in(tap, "FL")},
                                                           GraphLink{built.out(stream, "FR"), built.in(tap, "FR")},
                                                           GraphLink{built.out(stream, "FC"), built.in(tap, "FC")},
                                                           GraphLink{built.out(stream, "SL"), built.in(tap, "SL")},
                                                           GraphLink{built.out(stream, "SR"), built.in(tap, "SR")}));
}

TEST(LinkPlan, channelsWithoutAPositionAlternateBetweenTheSides)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(player, {"AUX0", "AUX1", "AUX2"});
    const GlobalId tap = built.tapNode();
    EXPECT_THAT(tapLinks(built, tap), UnorderedElementsAre(GraphLink{built.out(stream, "AUX0"), built.in(tap, "FL")},
                                                           GraphLink{built.out(stream, "AUX1"), built.in(tap, "FR")},
                                                           GraphLink{built.out(stream, "AUX2"), built.in(tap, "FL")}));
}

TEST(LinkPlan, ofManyStreamsNoPortGetsMoreThanTheServerAddsUp)
{
    constexpr std::size_t mostLinks = 128;
    for (const std::uint64_t step : {1U, 2U, 3U, 4U, 5U, 8U, 16U}) {
        GraphBuilder built;
        const GlobalId tap = built.tapNode();
        for (std::uint64_t i = 0; i < 400; ++i)
            built.graph.nodes[built.stream(player, {"FL", "FR"})].serial = 1000 + i * step;
        std::map<GlobalId, std::size_t> linksOf;
        for (const GraphLink &link : tapLinks(built, tap))
            ++linksOf[link.inputPort];
        EXPECT_EQ(linksOf.size(), 8U) << step;
        for (const auto &[port, links] : linksOf)
            EXPECT_LE(links, mostLinks) << "in steps of " << step;
    }
}

TEST(LinkPlan, aStreamKeepsItsPortsWhenOthersCome)
{
    GraphBuilder built;
    const GlobalId tap = built.tapNode();
    built.graph.nodes[built.stream(player, {"FL", "FR"})].serial = 77;
    const auto before = tapLinks(built, tap);
    for (std::uint64_t i = 0; i < 100; ++i)
        built.graph.nodes[built.stream(player, {"FL", "FR"})].serial = i;
    EXPECT_THAT(tapLinks(built, tap), IsSupersetOf(before));
}

} // namespace
} // namespace tolvenary
