#include "tests/session/click_delays.h"
#include "tests/session/driver_watch.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Empty when all of them have had cycles, the last ones of one driver; else what is wrong.
std::string faultOfDrivers(const std::vector<GraphNode> &nodes)
{
    const auto drivers = lastDrivers();
    for (const GraphNode &node : nodes) {
        if (!drivers.contains(node.id))
            return node.name + " has had no cycle";
        if (drivers.at(node.id) != drivers.at(nodes.front().id))
            return node.name + " has another driver than " + nodes.front().name;
    }
    return {};
}

/// Empty when the server drives our nodes together, and both captures before the output; else what is wrong. The sign
/// that the microphone is in use is waited for by nobody.
std::string faultOfGroup(const SoundGraph &graph)
{
    auto nodes = MixBed::nodesOfProgram(graph);
    std::erase_if(nodes, [](const GraphNode &node) { return node.name == "com.tolvenary.microphone.sign"; });
    const GraphNode *output = graph.node("com.tolvenary.output");
    if (nodes.size() != 3 || output == nullptr)
        return std::to_string(nodes.size()) + " nodes beside the sign";
    if (const std::string fault = faultOfDrivers(nodes); !fault.empty())
        return fault;
    for (const GraphNode &node : nodes) {
        if (node.state != "running")
            return node.name + " is " + node.state;
        const bool runsBefore = std::any_of(graph.links.begin(), graph.links.end(), [&](const GraphLink &link) {
            return link.outputNode == node.id && link.inputNode == output->id && link.state == "active";
        });
        if (node.id != output->id && !runsBefore)
            return node.name + " does not run before the output";
    }
    return {};
}

bool isOneGroup(MixBed &bed)
{
    forgetDrivers();
    std::string fault;
    const bool isOne = bed.waitForGraph([&](const SoundGraph &graph) { return (fault = faultOfGroup(graph)).empty(); });
    if (!isOne)
        std::printf("  %s\n", fault.c_str());
    return isOne;
}

} // namespace

/// That they have the same cycles is heard: a click leaves in the cycle in which it came.
TEST(DriverGroup, isOneAlsoAfterTheDeviceAndTheMicrophoneCameBack)
{
    const std::vector<std::string> voice = {"MONO=clicks:4801:0.5"};
    MixBedOptions options{.voice = voice};
    options.player.channels = {"FL=silence", "FR=silence"};
    MixBed bed(options);
    bed.run();
    EXPECT_TRUE(isOneGroup(bed));

    bed.device()->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }));
    EXPECT_TRUE(isOneGroup(bed)) << "while the device is away";
    bed.device() = makeBlackHole(bed.session());
    bed.voice().reset();
    bed.microphone()->remove();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("microphone") == nullptr; }));
    bed.microphone() = makeMicrophone(bed.session());
    bed.voice() = speakInto(bed.session(), "microphone", voice);

    EXPECT_TRUE(isOneGroup(bed));
    Recorder recorder(bed.session(), {"microphone:capture_MONO", bed.monitor("FL")});
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(listenToClicks("microphone", bed, recorder, {0, 1, 9600})));
}

} // namespace tolvenary::session
