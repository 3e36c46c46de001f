#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tolvenary
{

/// What we know of the server's objects. Plain data: filled by Registry, read by everybody under the control lock.
using GlobalId = std::uint32_t;

struct GraphClient {
    std::uint64_t serial = 0;
    std::optional<std::int32_t> processId; ///< of the application itself, also when it speaks through the pulse server
    std::string applicationName;
    std::string binary;
};

struct GraphNode {
    GlobalId id = 0;
    std::uint64_t serial = 0;
    std::string name;
    std::string description;
    std::string nick;
    std::string mediaClass;
    std::string linkGroup; ///< nodes of one group pass sound on inside their process (loopbacks, filter chains)
    std::optional<GlobalId> clientId;
    bool isWhole =
        false; ///< all its properties have been told; a node is announced with some of them, without its group
};

enum class PortDirection { input, output };

struct GraphPort {
    GlobalId id = 0;
    GlobalId nodeId = 0;
    std::uint32_t index = 0; ///< place among the node's ports of that direction
    PortDirection direction = PortDirection::input;
    bool isMonitor = false;
    std::string name;
    std::string channel; ///< "FL", "MONO", "AUX3" …; empty where unknown
};

struct GraphLink {
    GlobalId outputPort = 0;
    GlobalId inputPort = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): a false alarm on defaulted comparisons
    friend auto operator<=>(const GraphLink &, const GraphLink &) = default;
};

class Graph
{
  public:
    std::map<GlobalId, GraphClient> clients;
    std::map<GlobalId, GraphNode> nodes;
    std::map<GlobalId, GraphPort> ports;
    std::map<GlobalId, GraphLink> links;
    std::string defaultSourceName; ///< empty while there is none
    std::uint32_t configuredRate = 0;
    std::uint32_t forcedRate = 0;

    void clear() { *this = Graph(); }

    const GraphNode *node(GlobalId id) const;
    const GraphNode *nodeWithSerial(std::uint64_t serial) const;
    const GraphPort *port(GlobalId id) const;
    // The newest of that name: after a device came back, its predecessor may linger for a moment. A sink and a source
    // may share a name, as the two ends of a handmade device may.
    const GraphNode *sinkNamed(const std::string &name) const;
    const GraphNode *sourceNamed(const std::string &name) const;
    /// The sink if there are both.
    const GraphNode *deviceNamed(const std::string &name) const;

    /// The nodes that are devices, in the order in which they came.
    std::vector<const GraphNode *> devices() const;
    bool isDevice(const GraphNode &node) const;
    bool isSink(const GraphNode &node) const;

    /// The node's ports of one direction in their order; monitors are left out.
    std::vector<const GraphPort *> portsOf(GlobalId nodeId, PortDirection direction) const;
    /// The same for the outputs of all nodes, by node: cheaper when many are asked about.
    std::unordered_map<GlobalId, std::vector<const GraphPort *>> outputPorts() const;
    /// Where sound goes into a device: none for a source, whatever ports it has.
    std::vector<const GraphPort *> playbackPorts(const GraphNode &node) const;
    /// Where sound comes out of a device: its own outputs, else its monitors.
    std::vector<const GraphPort *> capturePorts(const GraphNode &node) const;

    std::vector<GraphLink> linksBetween(GlobalId outputNode, GlobalId inputNode) const;

    std::optional<std::int32_t> processOf(const GraphNode &node) const;
};

} // namespace tolvenary
