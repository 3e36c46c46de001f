#include "platform/pipewire/graph.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

template <typename Matches>
const GraphNode *newestNamed(const std::map<GlobalId, GraphNode> &nodes, const std::string &name, Matches matches)
{
    const GraphNode *newest = nullptr;
    for (const auto &[id, node] : nodes) {
        if (node.name == name && matches(node) && (newest == nullptr || node.serial > newest->serial))
            newest = &node;
    }
    return newest;
}

void sortByIndex(std::vector<const GraphPort *> &ports)
{
    std::ranges::sort(ports, {}, [](const GraphPort *port) { return port->index; });
}

} // namespace

const GraphNode *Graph::node(GlobalId id) const
{
    const auto found = nodes.find(id);
    return found == nodes.end() ? nullptr : &found->second;
}

const GraphNode *Graph::nodeWithSerial(std::uint64_t serial) const
{
    const auto found = std::ranges::find_if(nodes, [&](const auto &entry) { return entry.second.serial == serial; });
    return found == nodes.end() ? nullptr : &found->second;
}

const GraphPort *Graph::port(GlobalId id) const
{
    const auto found = ports.find(id);
    return found == ports.end() ? nullptr : &found->second;
}

const GraphNode *Graph::sinkNamed(const std::string &name) const
{
    return newestNamed(nodes, name, [this](const GraphNode &node) { return isSink(node); });
}

const GraphNode *Graph::sourceNamed(const std::string &name) const
{
    return newestNamed(nodes, name,
                       [this](const GraphNode &node) { return isDevice(node) && node.mediaClass != "Audio/Sink"; });
}

const GraphNode *Graph::deviceNamed(const std::string &name) const
{
    const GraphNode *sink = sinkNamed(name);
    return sink != nullptr ? sink : sourceNamed(name);
}

bool Graph::isSink(const GraphNode &node) const
{
    return node.mediaClass == "Audio/Sink" || node.mediaClass == "Audio/Duplex";
}

bool Graph::isDevice(const GraphNode &node) const
{
    return isSink(node) || node.mediaClass == "Audio/Source" || node.mediaClass == "Audio/Source/Virtual";
}

std::vector<const GraphNode *> Graph::devices() const
{
    std::vector<const GraphNode *> found;
    for (const auto &[id, node] : nodes) {
        if (isDevice(node))
            found.push_back(&node);
    }
    std::ranges::sort(found, {}, [](const GraphNode *node) { return node->serial; });
    return found;
}

std::vector<const GraphPort *> Graph::portsOf(GlobalId nodeId, PortDirection direction) const
{
    std::vector<const GraphPort *> found;
    for (const auto &[id, port] : ports) {
        if (port.nodeId == nodeId && port.direction == direction && !port.isMonitor)
            found.push_back(&port);
    }
    sortByIndex(found);
    return found;
}

std::unordered_map<GlobalId, std::vector<const GraphPort *>> Graph::outputPorts() const
{
    std::unordered_map<GlobalId, std::vector<const GraphPort *>> found;
    for (const auto &[id, port] : ports) {
        if (port.direction == PortDirection::output && !port.isMonitor)
            found[port.nodeId].push_back(&port);
    }
    for (auto &[nodeId, ofNode] : found)
        sortByIndex(ofNode);
    return found;
}

std::vector<const GraphPort *> Graph::playbackPorts(const GraphNode &node) const
{
    if (!isSink(node))
        return {};
    return portsOf(node.id, PortDirection::input);
}

std::vector<const GraphPort *> Graph::capturePorts(const GraphNode &node) const
{
    std::vector<const GraphPort *> own = portsOf(node.id, PortDirection::output);
    if (!own.empty())
        return own;
    for (const auto &[id, port] : ports) {
        if (port.nodeId == node.id && port.direction == PortDirection::output)
            own.push_back(&port);
    }
    sortByIndex(own);
    return own;
}

std::vector<GraphLink> Graph::linksBetween(GlobalId outputNode, GlobalId inputNode) const
{
    std::vector<GraphLink> found;
    for (const auto &[id, link] : links) {
        const GraphPort *outOf = port(link.outputPort);
        const GraphPort *into = port(link.inputPort);
        if (outOf != nullptr && into != nullptr && outOf->nodeId == outputNode && into->nodeId == inputNode)
            found.push_back(link);
    }
    return found;
}

std::optional<std::int32_t> Graph::processOf(const GraphNode &node) const
{
    if (!node.clientId)
        return std::nullopt;
    const auto client = clients.find(*node.clientId);
    return client == clients.end() ? std::nullopt : client->second.processId;
}

} // namespace tolvenary
