#include "platform/pipewire/link_plan.h"

#include "platform/pipewire/heard_nodes.h"
#include "platform/pipewire/port_names.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace tolvenary
{

namespace
{

using Links = std::set<GraphLink>;
using Ports = std::vector<const GraphPort *>;

const GraphPort *portNamed(const Graph &graph, GlobalId nodeId, PortDirection direction, std::string_view name)
{
    for (const GraphPort *port : graph.portsOf(nodeId, direction)) {
        if (port->name == name)
            return port;
    }
    return nullptr;
}

const GraphPort *portOfChannel(const Ports &ports, std::string_view channel)
{
    const auto found = std::ranges::find(ports, channel, &GraphPort::channel);
    return found == ports.end() ? nullptr : *found;
}

void link(Links &links, const GraphPort *output, const GraphPort *input)
{
    if (output != nullptr && input != nullptr)
        links.insert({output->id, input->id});
}

// Makes `captureNode` run before every output node in each cycle, so that what it hands over leaves in the same one.
void planOrder(Links &links, const Graph &graph, const LinkWishes &wishes, GlobalId captureNode)
{
    for (const OutputWish &output : wishes.outputs) {
        link(links, portNamed(graph, captureNode, PortDirection::output, port_names::order),
             portNamed(graph, output.nodeId, PortDirection::input, port_names::order));
    }
}

void planOutput(Links &links, const Graph &graph, const OutputWish &wish)
{
    const GraphNode *device = graph.sinkNamed(wish.deviceName);
    if (device == nullptr)
        return;
    const Ports into = graph.playbackPorts(*device);
    if (into.empty())
        return;
    const auto own = [&](const char *name) { return portNamed(graph, wish.nodeId, PortDirection::output, name); };
    if (into.size() == 1) {
        link(links, own(port_names::mono), into.front());
        return;
    }
    const GraphPort *left = portOfChannel(into, "FL");
    const GraphPort *right = portOfChannel(into, "FR");
    const bool positioned = left != nullptr && right != nullptr;
    link(links, own(port_names::left), positioned ? left : into[0]);
    link(links, own(port_names::right), positioned ? right : into[1]);
}

Ports portsOfSet(const Graph &graph, GlobalId nodeId, std::size_t set)
{
    Ports ports = graph.portsOf(nodeId, PortDirection::input);
    std::erase_if(ports,
                  [set](const GraphPort *port) { return !port->name.starts_with(port_names::microphoneSets[set]); });
    return ports;
}

// When the user changes to another source, the node keeps the channels that it was made with: a mono source is heard on
// all of them, and of a source with more channels the first ones are.
void planSource(Links &links, const Ports &from, const Ports &into)
{
    for (std::size_t i = 0; i < into.size(); ++i) {
        if (from.size() == 1)
            link(links, from.front(), into[i]);
        else if (i < from.size())
            link(links, from[i], into[i]);
    }
}

void planInput(Links &links, const Graph &graph, const LinkWishes &wishes, const InputWish &wish)
{
    const GraphNode *source = microphoneOf(graph, wishes);
    if (source != nullptr && !wish.isMicrophoneHeld)
        planSource(links, graph.capturePorts(*source), portsOfSet(graph, wish.nodeId, wish.set));
    const GraphNode *leaving = wish.leaving ? graph.nodeWithSerial(*wish.leaving) : nullptr;
    if (leaving != nullptr)
        planSource(links, graph.capturePorts(*leaving), portsOfSet(graph, wish.nodeId, 1 - wish.set));
}

// Where a channel of a stream goes, as names of the tap's ports (ITU-R BS.775: centre and surrounds at -3 dB, which the
// tap applies to those ports; the low-frequency channel is left out).
struct FoldDown {
    std::string_view channel;
    std::array<const char *, 2> ports;
};
constexpr std::array foldDowns{
    FoldDown{"FL", {port_names::left, nullptr}},
    FoldDown{"FR", {port_names::right, nullptr}},
    FoldDown{"FLC", {port_names::left, nullptr}},
    FoldDown{"FRC", {port_names::right, nullptr}},
    FoldDown{"MONO", {port_names::left, port_names::right}},
    FoldDown{"FC", {port_names::center, nullptr}},
    FoldDown{"RC", {port_names::center, nullptr}},
    FoldDown{"TC", {port_names::center, nullptr}},
    FoldDown{"TFC", {port_names::center, nullptr}},
    FoldDown{"TRC", {port_names::center, nullptr}},
    FoldDown{"SL", {port_names::surroundLeft, nullptr}},
    FoldDown{"SR", {port_names::surroundRight, nullptr}},
    FoldDown{"RL", {port_names::surroundLeft, nullptr}},
    FoldDown{"RR", {port_names::surroundRight, nullptr}},
    FoldDown{"TFL", {port_names::surroundLeft, nullptr}},
    FoldDown{"TFR", {port_names::surroundRight, nullptr}},
    FoldDown{"TRL", {port_names::surroundLeft, nullptr}},
    FoldDown{"TRR", {port_names::surroundRight, nullptr}},
    FoldDown{"LFE", {nullptr, nullptr}},
    FoldDown{"LFE2", {nullptr, nullptr}},
};

std::array<const char *, 2> foldDown(const GraphPort &port, std::size_t place, std::size_t channels)
{
    if (channels == 1)
        return {port_names::left, port_names::right};
    const auto *known = std::ranges::find(foldDowns, std::string_view(port.channel), &FoldDown::channel);
    if (known != foldDowns.end())
        return known->ports;
    return {place % 2 == 0 ? port_names::left : port_names::right, nullptr};
}

// Which of the ports of one side a stream goes into. It depends on the stream alone, so that nobody is relinked when
// others come and go.
std::size_t bankOf(const GraphNode &stream)
{
    constexpr std::uint64_t scatter =
        0x9E3779B97F4A7C15; // ids that come in regular steps must not all meet in one bank
    return (stream.serial * scatter) >> 62;
}

using PortsByName = std::map<std::string_view, const GraphPort *>;

const GraphPort *tapPort(const PortsByName &tap, std::string_view side, std::size_t bank)
{
    std::string_view name = side;
    if (side == port_names::left)
        name = port_names::lefts.at(bank);
    else if (side == port_names::right)
        name = port_names::rights.at(bank);
    const auto found = tap.find(name);
    return found == tap.end() ? nullptr : found->second;
}

void planStream(Links &links, const Ports &from, const PortsByName &tap, std::size_t bank)
{
    for (std::size_t i = 0; i < from.size(); ++i) {
        for (const char *name : foldDown(*from[i], i, from.size())) {
            if (name != nullptr)
                link(links, from[i], tapPort(tap, name, bank));
        }
    }
}

void planTap(Links &links, const Graph &graph, const TapWish &wish)
{
    PortsByName tap;
    for (const GraphPort *port : graph.portsOf(wish.nodeId, PortDirection::input))
        tap.emplace(port->name, port);
    const auto outputs = graph.outputPorts();
    for (const GlobalId stream : tappedStreams(graph, wish)) {
        const auto from = outputs.find(stream);
        if (from != outputs.end() && !wish.heldStreams.contains(stream))
            planStream(links, from->second, tap, bankOf(*graph.node(stream)));
    }
}

// One of its ports is enough to wait for the stream.
void planProbe(Links &links, const Graph &graph, const ProbeWish &wish)
{
    const Ports from = graph.portsOf(wish.stream, PortDirection::output);
    if (!from.empty())
        link(links, from.front(), portNamed(graph, wish.nodeId, PortDirection::input, port_names::mono));
}

} // namespace

std::set<GraphLink> planLinks(const Graph &graph, const LinkWishes &wishes)
{
    Links links;
    for (const InputWish &wish : wishes.inputs) {
        if (wish.isInOrder)
            planOrder(links, graph, wishes, wish.nodeId);
    }
    for (const TapWish &wish : wishes.taps) {
        if (wish.isInOrder)
            planOrder(links, graph, wishes, wish.nodeId);
    }
    for (const OutputWish &wish : wishes.outputs)
        planOutput(links, graph, wish);
    for (const InputWish &wish : wishes.inputs)
        planInput(links, graph, wishes, wish);
    for (const TapWish &wish : wishes.taps)
        planTap(links, graph, wish);
    for (const ProbeWish &wish : wishes.probes)
        planProbe(links, graph, wish);
    return links;
}

} // namespace tolvenary
