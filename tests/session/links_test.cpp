#include "tests/session/listening.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

const std::string isRunning = "Running → ";

/// A device of the right name that takes no sound, and says so at SIGUSR1.
std::unique_ptr<ChildProcess> makeUnfitDevice(MixBed &bed)
{
    auto device = bed.session().start({TOLVENARY_PLAYER, "--sink", "--name", "unfit", "--application",
                                       "BlackHole unfit", "FL=silence", "FR=silence"});
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.port("unfit:playback_FR") != nullptr; }));
    return device;
}

std::vector<GraphLink> linksInto(const SoundGraph &graph, const std::string &name)
{
    std::vector<GraphLink> found = graph.links;
    const GraphNode *node = graph.node(name);
    std::erase_if(found, [&](const GraphLink &link) { return node == nullptr || link.inputNode != node->id; });
    return found;
}

/// Takes one away, as a user does in a graph editor.
void cut(const GraphLink &link)
{
    runToEnd({"pw-link", "-d", std::to_string(link.id)});
}

/// Takes the link between these ports away and makes it again; false where we were faster.
bool putBackBeforeUs(const GraphLink &link)
{
    const SoundGraph graph = SoundGraph::read();
    if (const GraphLink *there = graph.link(link.outputPort, link.inputPort))
        cut(*there);
    try {
        runToEnd({"pw-link", std::to_string(link.outputPort), std::to_string(link.inputPort)});
    } catch (const std::runtime_error &) {
        return false;
    }
    return true;
}

std::vector<GraphLink> linksFrom(const SoundGraph &graph, const std::string &name)
{
    std::vector<GraphLink> found = graph.links;
    const GraphNode *node = graph.node(name);
    std::erase_if(found, [&](const GraphLink &link) { return node == nullptr || link.outputNode != node->id; });
    return found;
}

/// The links of ours between two nodes, one of which a stranger's.
std::vector<GraphLink> ourLinksWith(const std::string &stranger)
{
    const SoundGraph graph = SoundGraph::read();
    std::vector<GraphLink> found = linksFrom(graph, stranger);
    for (const GraphLink &link : linksInto(graph, stranger))
        found.push_back(link);
    const auto ours = MixBed::nodesOfProgram(graph);
    const auto isOurs = [&](std::uint32_t node) { return std::ranges::find(ours, node, &GraphNode::id) != ours.end(); };
    std::erase_if(found, [&](const GraphLink &link) { return !isOurs(link.outputNode) && !isOurs(link.inputNode); });
    return found;
}

std::optional<GraphNode> nodeNamedLike(const SoundGraph &graph, const std::string &beginning)
{
    const auto found = std::ranges::find_if(graph.nodes, [&](const GraphNode &node) {
        return node.name.starts_with(beginning) && !node.name.ends_with("sign");
    });
    return found == graph.nodes.end() ? std::nullopt : std::optional(*found);
}

} // namespace

class CutLinks : public testing::TestWithParam<const char *>
{
};

TEST_P(CutLinks, areMadeAgainAndTheMixReturns)
{
    MixBed bed;
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    const auto links = ourLinksWith(GetParam());
    ASSERT_FALSE(links.empty());
    for (const GraphLink &link : links)
        cut(link);
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
}

INSTANTIATE_TEST_SUITE_P(With, CutLinks, testing::Values("blackhole_2ch", "microphone", "player"),
                         [](const auto &info) { return std::string(info.param); });

class EndedNodes : public testing::TestWithParam<const char *>
{
};

TEST_P(EndedNodes, areMadeAgainAndTheMixReturns)
{
    MixBed bed;
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    bed.record(recorder, 96000); // who ends it sooner would end the next one, too
    const auto node = nodeNamedLike(SoundGraph::read(), GetParam());
    ASSERT_TRUE(node);
    runToEnd({"pw-cli", "destroy", std::to_string(node->id)});
    ASSERT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
        const auto made = nodeNamedLike(graph, GetParam());
        return made && made->properties.at("object.serial") != node->properties.at("object.serial");
    }));
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
}

INSTANTIATE_TEST_SUITE_P(Of, EndedNodes,
                         testing::Values("com.tolvenary.output", "com.tolvenary.microphone", "com.tolvenary.tap"),
                         [](const auto &info) { return std::string(info.param).substr(sizeof "com.tolvenary"); });

/// Who took them away by a slip of the hand puts them back himself, before we do.
TEST(Links, thatTheUserMakesAgainDoAsWellAndAreMadeByUsWhenHeTakesThemAway)
{
    MixBed bed;
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    const auto links = ourLinksWith("blackhole_2ch");
    ASSERT_EQ(links.size(), 2U);
    ASSERT_TRUE(bed.waitFor([&] { return std::ranges::all_of(links, putBackBeforeUs); }));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    // Ours has been asked for and refused by now.
    bed.record(recorder, 96000);
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
    for (const GraphLink &link : ourLinksWith("blackhole_2ch"))
        cut(link);
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
}

TEST(Links, thatTheUserMakesToTheSpeakersAreNotTakenForTheDevice)
{
    MixBed bed;
    bed.run();
    link(bed.session(), "com.tolvenary.output:FL", "speakers:playback_FL");
    ASSERT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
    bed.device()->remove();
    EXPECT_TRUE(statusBecomes(bed, "BlackHole device not found.")) << bed.status();
}

TEST(Links, thatFailDuringAMixAreNotTakenForTheDevice)
{
    MixBed bed({.device = false});
    const auto device = makeUnfitDevice(bed);
    bed.run();
    ASSERT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
    device->signal(SIGUSR1);
    ASSERT_TRUE(bed.waitFor([&] { return device->output().find("declined") != std::string::npos; }));
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        return std::ranges::all_of(linksInto(graph, "unfit"),
                                   [](const GraphLink &link) { return link.state == "error"; });
    }));
    EXPECT_TRUE(statusBecomes(bed, "BlackHole device not found.")) << bed.status();
    EXPECT_TRUE(bed.isRunning());
}

} // namespace tolvenary::session
