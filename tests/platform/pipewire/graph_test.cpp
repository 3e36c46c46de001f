#include "tests/platform/pipewire/graph_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

TEST(Graph, devicesComeInTheOrderOfTheirSerials)
{
    GraphBuilder built;
    const GlobalId first = built.sink("a", {"FL"});
    const GlobalId second = built.source("b", {"FL"});
    built.stream(1, {"FL"});
    built.graph.nodes[first].serial = 100;
    const std::vector<const GraphNode *> devices = built.graph.devices();
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0]->id, second);
    EXPECT_EQ(devices[1]->id, first);
}

TEST(Graph, ofASinkAndASourceOfOneNameTheSinkIsTheDevice)
{
    GraphBuilder built;
    EXPECT_EQ(built.graph.deviceNamed("a"), nullptr);
    const GlobalId source = built.source("a", {"FL"});
    ASSERT_NE(built.graph.deviceNamed("a"), nullptr);
    EXPECT_EQ(built.graph.deviceNamed("a")->id, source);
    const GlobalId sink = built.sink("a", {"FL"});
    built.source("a", {"FL"});
    EXPECT_EQ(built.graph.deviceNamed("a")->id, sink);
}

TEST(Graph, linksBetweenTwoNodesAreThoseOfTheirPorts)
{
    GraphBuilder built;
    const GlobalId stream = built.stream(1, {"FL", "FR"});
    const GlobalId other = built.stream(2, {"FL"});
    const GlobalId sink = built.sink("sink", {"FL", "FR"});
    const GlobalId tap = built.tapNode();
    built.link(built.out(stream, "FL"), built.in(tap, "FL"));
    built.link(built.out(stream, "FR"), built.in(tap, "FR"));
    built.link(built.out(stream, "FL"), built.in(sink, "FL"));
    built.link(built.out(other, "FL"), built.in(tap, "FL"));
    built.link(built.out(stream, "FL"), 9999); // to a port that we do not know of yet
    EXPECT_THAT(built.graph.linksBetween(stream, tap),
                testing::UnorderedElementsAre(GraphLink{built.out(stream, "FL"), built.in(tap, "FL")},
                                              GraphLink{built.out(stream, "FR"), built.in(tap, "FR")}));
    EXPECT_TRUE(built.graph.linksBetween(tap, stream).empty());
}

TEST(Graph, monitorsAreNoPlaybackPorts)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("sink", {"FL", "FR"});
    EXPECT_EQ(built.graph.playbackPorts(*built.graph.node(sink)).size(), 2U);
}

TEST(Graph, aSourceHasNoPlaybackPortsWhateverItsInputs)
{
    GraphBuilder built;
    const GlobalId source = built.node("virtual", "Audio/Source/Virtual");
    built.port(source, PortDirection::input, "FL");
    built.port(source, PortDirection::output, "FL");
    EXPECT_TRUE(built.graph.playbackPorts(*built.graph.node(source)).empty());
    EXPECT_EQ(built.graph.capturePorts(*built.graph.node(source)).size(), 1U);
}

TEST(Graph, aSinkIsCapturedAtItsMonitors)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("sink", {"FL", "FR"});
    EXPECT_EQ(built.graph.capturePorts(*built.graph.node(sink)).size(), 2U);
}

TEST(Graph, portsKeepTheOrderOfTheirNode)
{
    GraphBuilder built;
    const GlobalId sink = built.sink("sink", {"FR", "FL"});
    built.graph.ports[built.in(sink, "FR")].index = 7;
    const std::vector<const GraphPort *> ports = built.graph.playbackPorts(*built.graph.node(sink));
    ASSERT_EQ(ports.size(), 2U);
    EXPECT_EQ(ports[0]->channel, "FL");
    EXPECT_EQ(ports[1]->channel, "FR");
}

TEST(Graph, aNodeOfNoKnownClientHasNoProcess)
{
    GraphBuilder built;
    const GlobalId node = built.node("n", "Stream/Output/Audio", "", 999);
    EXPECT_EQ(built.graph.processOf(*built.graph.node(node)), std::nullopt);
}

} // namespace
} // namespace tolvenary
