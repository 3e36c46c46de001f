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

} // namespace

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
