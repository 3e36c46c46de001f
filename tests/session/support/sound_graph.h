#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tolvenary::session
{

using Properties = std::map<std::string, std::string>;

struct GraphClient {
    std::uint32_t id = 0;
    Properties properties;
};

struct GraphNode {
    std::uint32_t id = 0;
    std::string name;
    std::string state;
    Properties properties;
};

struct GraphPort {
    std::uint32_t id = 0;
    std::uint32_t node = 0;
    std::string name;
    bool isInput = false;
    bool isMonitor = false;
};

struct GraphLink {
    std::uint32_t id = 0;
    std::uint32_t outputPort = 0;
    std::uint32_t inputPort = 0;
    std::uint32_t outputNode = 0;
    std::uint32_t inputNode = 0;
    std::string state;
};

/// What the sound server held at one moment, as an outsider sees it (pw-dump).
struct SoundGraph {
    std::vector<GraphClient> clients;
    std::vector<GraphNode> nodes;
    std::vector<GraphPort> ports;
    std::vector<GraphLink> links;
    /// "name/key" of each metadata entry on subject 0, for example "default/default.audio.source", as JSON text.
    std::map<std::string, std::string> metadata;

    /// Throws std::runtime_error when the server does not answer.
    static SoundGraph read();

    const GraphNode *node(const std::string &name) const;
    /// The port "node name:port name"; a wildcard in neither.
    const GraphPort *port(const std::string &path) const;
    std::vector<GraphPort> portsOf(std::uint32_t node) const;
    /// Nodes of all clients of that process, and nodes that say they belong to it.
    std::vector<GraphNode> nodesOfProcess(std::int64_t process) const;
    const GraphLink *link(std::uint32_t outputPort, std::uint32_t inputPort) const;
    /// Name in the JSON value of "default.audio.source" or "default.audio.sink"; empty where none is set.
    std::string defaultNode(const std::string &key) const;
};

} // namespace tolvenary::session
