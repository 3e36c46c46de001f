#pragma once

#include "platform/pipewire/graph.h"

namespace tolvenary
{

/// Who plays in it.
inline constexpr std::int32_t ownProcess = 1;
inline constexpr std::int32_t player = 2;

/// Builds a server's graph for a test, object by object. Ids count up as they would there.
class GraphBuilder
{
  public:
    Graph graph;

    GlobalId client(std::int32_t process, const std::string &name = "app")
    {
        const GlobalId id = m_next++;
        graph.clients[id] = {id, process, name, name};
        return id;
    }

    GlobalId node(const std::string &name, const std::string &mediaClass, const std::string &linkGroup = "",
                  std::optional<GlobalId> clientId = std::nullopt)
    {
        const GlobalId id = m_next++;
        graph.nodes[id] = {id, id, name, name + " description", "", mediaClass, linkGroup, clientId, true};
        return id;
    }

    GlobalId port(GlobalId nodeId, PortDirection direction, const std::string &channel, bool isMonitor = false)
    {
        const GlobalId id = m_next++;
        std::uint32_t index = 0;
        for (const auto &[other, port] : graph.ports)
            index += port.nodeId == nodeId && port.direction == direction ? 1 : 0;
        graph.ports[id] = {id, nodeId, index, direction, isMonitor, channel, channel};
        return id;
    }

    void link(GlobalId outputPort, GlobalId inputPort) { graph.links[m_next++] = {outputPort, inputPort}; }

    /// A sink with playback and monitor ports.
    GlobalId sink(const std::string &name, const std::vector<std::string> &channels, const std::string &group = "")
    {
        const GlobalId id = node(name, "Audio/Sink", group);
        for (const std::string &channel : channels) {
            port(id, PortDirection::input, channel);
            port(id, PortDirection::output, channel, true);
        }
        return id;
    }

    GlobalId source(const std::string &name, const std::vector<std::string> &channels, const std::string &group = "")
    {
        const GlobalId id = node(name, "Audio/Source", group);
        for (const std::string &channel : channels)
            port(id, PortDirection::output, channel);
        return id;
    }

    /// A playing stream of the process.
    GlobalId stream(std::int32_t process, const std::vector<std::string> &channels, const std::string &group = "")
    {
        const GlobalId id = node("stream", "Stream/Output/Audio", group, client(process));
        graph.nodes[id].serial = 0; // into the first of a tap's ports of a side
        for (const std::string &channel : channels)
            port(id, PortDirection::output, channel);
        return id;
    }

    /// Our own nodes, with the ports that they have in the program.
    GlobalId outputNode() { return ownNode({"FL", "FR", "MONO"}, {"order"}); }
    GlobalId inputNode(const std::vector<std::string> &inputs) { return ownNode({"order"}, inputs); }
    GlobalId tapNode()
    {
        return ownNode({"order"}, {"FL", "FR", "FC", "SL", "SR", "FL.2", "FR.2", "FL.3", "FR.3", "FL.4", "FR.4"});
    }

    /// The one port of the node with that channel.
    GlobalId portOf(GlobalId nodeId, PortDirection direction, const std::string &channel, bool isMonitor = false) const
    {
        for (const auto &[id, port] : graph.ports) {
            if (port.nodeId == nodeId && port.direction == direction && port.channel == channel &&
                port.isMonitor == isMonitor)
                return id;
        }
        return 0;
    }
    GlobalId out(GlobalId nodeId, const std::string &channel) const
    {
        return portOf(nodeId, PortDirection::output, channel);
    }
    GlobalId in(GlobalId nodeId, const std::string &channel) const
    {
        return portOf(nodeId, PortDirection::input, channel);
    }
    GlobalId monitor(GlobalId nodeId, const std::string &channel) const
    {
        return portOf(nodeId, PortDirection::output, channel, true);
    }

  private:
    GlobalId ownNode(const std::vector<std::string> &outputs, const std::vector<std::string> &inputs)
    {
        const GlobalId id = node("own", "");
        for (const std::string &name : outputs)
            port(id, PortDirection::output, name);
        for (const std::string &name : inputs)
            port(id, PortDirection::input, name);
        return id;
    }

    GlobalId m_next = 30;
};

} // namespace tolvenary
