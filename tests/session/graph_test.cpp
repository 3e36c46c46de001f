#include "tests/session/mix_bed.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> descriptions(const std::vector<GraphNode> &nodes)
{
    std::vector<std::string> found;
    for (const GraphNode &node : nodes)
        found.push_back(node.properties.at("node.description"));
    return found;
}

const auto allOfThem =
    UnorderedElementsAre("Tolvenary", "Tolvenary microphone", "TolvenaryTapAggregate", "Tolvenary records");

} // namespace

TEST(Graph, aRunningMixIsThreeNodesAndASignInOneDriverGroup)
{
    MixBed bed;
    bed.run();
    std::vector<GraphNode> nodes;
    ASSERT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
        nodes = MixBed::nodesOfProgram(graph);
        const GraphNode *sign = graph.node("com.tolvenary.microphone.sign");
        return sign != nullptr && sign->state == "running"; // linked by the session manager, in its own time
    }));
    ASSERT_THAT(descriptions(nodes), allOfThem);
    for (const GraphNode &node : nodes) {
        EXPECT_EQ(node.properties.at("node.group"), nodes.front().properties.at("node.group"));
        EXPECT_EQ(node.state, "running");
        const bool isTap = node.properties.at("node.description") == "TolvenaryTapAggregate";
        EXPECT_EQ(isTap, testing::Matches(testing::MatchesRegex("com\\.tolvenary\\.tap\\.[0-9A-F-]+"))(node.name));
    }
}

TEST(Graph, itIsLinkedToTheDeviceAndToNothingElseThatPlays)
{
    MixBed bed;
    bed.run();
    const SoundGraph graph = SoundGraph::read();
    const std::uint32_t device = graph.node("blackhole_2ch")->id;
    const GraphNode *output = graph.node("com.tolvenary.output");
    ASSERT_NE(output, nullptr);
    std::size_t links = 0;
    for (const GraphLink &link : graph.links) {
        if (link.outputNode != output->id)
            continue;
        ++links;
        EXPECT_EQ(link.inputNode, device);
        EXPECT_EQ(link.state, "active");
    }
    EXPECT_EQ(links, 2U) << "one a channel";
}

TEST(Graph, afterStopNoneIsLeft)
{
    MixBed bed;
    bed.run();
    bed.stop();
    EXPECT_THAT(MixBed::nodesOfProgram(SoundGraph::read()), IsEmpty());
    EXPECT_EQ(bed.status(), "Stopped");
}

TEST(Graph, afterStopAndStartAllAreThereAgainWithAFreshTap)
{
    const auto tapName = [] {
        for (const GraphNode &node : MixBed::nodesOfProgram(SoundGraph::read()))
            if (node.properties.at("node.description") == "TolvenaryTapAggregate")
                return node.name;
        return std::string();
    };
    MixBed bed;
    bed.run();
    const std::string first = tapName();
    bed.stop();
    bed.run();
    EXPECT_THAT(descriptions(MixBed::nodesOfProgram(SoundGraph::read())), allOfThem);
    EXPECT_NE(tapName(), first);
}

TEST(Graph, aSecondStartWhileTheFirstIsInFlightLeavesOneMix)
{
    MixBed bed;
    bed.launch();
    bed.mix().setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    auto first = bed.mix().start();
    auto second = bed.mix().start();
    ASSERT_TRUE(bed.waitFor([&] { return bed.isRunning() && first.isReady() && second.isReady(); })) << bed.status();
    EXPECT_THAT(descriptions(MixBed::nodesOfProgram(SoundGraph::read())), allOfThem);
    bed.stop();
    EXPECT_THAT(MixBed::nodesOfProgram(SoundGraph::read()), IsEmpty());
}

TEST(Graph, afterAKillNoneIsLeft)
{
    MixBed bed;
    const auto runner = bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())});
    const auto isLinked = [&](const SoundGraph &graph) {
        const auto nodes = graph.nodesOfProcess(runner->pid());
        return nodes.size() == 4 &&
               std::all_of(nodes.begin(), nodes.end(), [](const GraphNode &node) { return node.state == "running"; });
    };
    ASSERT_TRUE(bed.waitForGraph(isLinked)) << runner->output();
    runner->signal(SIGKILL);
    ASSERT_TRUE(runner->waitForEnd(std::chrono::seconds(5)));
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        return std::none_of(graph.nodes.begin(), graph.nodes.end(),
                            [](const GraphNode &node) { return node.name.starts_with("com.tolvenary"); });
    }));
}

} // namespace tolvenary::session
