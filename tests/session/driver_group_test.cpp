#include "tests/session/click_delays.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// Empty when our nodes run in one driver group, and both captures before the output; else what is wrong. The sign that
/// the microphone is in use is waited for by nobody.
std::string faultOfGroup(const SoundGraph &graph)
{
    const auto nodes = MixBed::nodesOfProgram(graph);
    if (nodes.size() != 4)
        return std::to_string(nodes.size()) + " nodes";
    const GraphNode *output = graph.node("com.tolvenary.output");
    if (output == nullptr)
        return "no output";
    for (const GraphNode &node : nodes) {
        if (node.properties.at("node.group") != output->properties.at("node.group"))
            return node.name + " is in another group";
        if (node.name == "com.tolvenary.microphone.sign")
            continue;
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
    EXPECT_TRUE(areAtOnce(bed, recorder, 0, 1));
}

} // namespace tolvenary::session
