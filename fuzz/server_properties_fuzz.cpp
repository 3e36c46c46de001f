#include "fuzz/require.h"
#include "platform/pipewire/graph_reader.h"
#include "platform/pipewire/link_plan.h"

#include <array>
#include <fuzzer/FuzzedDataProvider.h>
#include <spa/utils/dict.h>

using namespace tolvenary;
using tolvenary::fuzz::require;

namespace
{

constexpr std::array keys{
    "object.serial",
    "node.name",
    "node.description",
    "node.nick",
    "media.class",
    "node.link-group",
    "client.id",
    "client.api",
    "node.id",
    "application.process.id",
    "pipewire.sec.pid",
    "application.name",
    "application.process.binary",
    "port.id",
    "port.direction",
    "port.monitor",
    "port.name",
    "audio.channel",
    "metadata.name",
    "link.output.port",
    "link.input.port",
};

constexpr std::array values{
    "Audio/Sink",
    "Audio/Source",
    "Audio/Duplex",
    "Audio/Source/Virtual",
    "Stream/Output/Audio",
    "pipewire-pulse",
    "in",
    "out",
    "true",
    "order",
    "FL",
    "FR",
    "FC",
    "MONO",
    "SL",
    "LFE",
    "AUX0",
    "device",
    "loopback-1",
    "0",
    "1",
    "2",
    "3",
    "4",
};

/// Properties that a program might set on an object of its own.
class HostileProperties
{
  public:
    explicit HostileProperties(FuzzedDataProvider &input)
    {
        const std::size_t count = input.ConsumeIntegralInRange(0U, 8U);
        m_values.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const char *const key = input.PickValueInArray(keys);
            m_values.push_back(input.ConsumeBool() ? std::string(input.PickValueInArray(values))
                                                   : input.ConsumeRandomLengthString(64));
            m_items.push_back({key, input.ConsumeIntegralInRange(0, 31) > 0 ? m_values.back().c_str() : nullptr});
        }
        m_dict.n_items = static_cast<std::uint32_t>(m_items.size());
        m_dict.items = m_items.data();
        m_isThere = input.ConsumeIntegralInRange(0, 31) > 0;
    }

    const spa_dict *get() const { return m_isThere ? &m_dict : nullptr; }

  private:
    std::vector<std::string> m_values;
    std::vector<spa_dict_item> m_items;
    spa_dict m_dict{};
    bool m_isThere = true;
};

void addObject(FuzzedDataProvider &input, Graph &graph)
{
    const auto id = input.ConsumeIntegralInRange<GlobalId>(0, 12);
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
    case 1:
        graph.nodes[id].id = id;
        graph.nodes[id].serial = readSerial(id, HostileProperties(input).get());
        readNode(graph.nodes[id], HostileProperties(input).get());
        break;
    case 2:
    case 3:
        graph.ports[id] = readPort(id, HostileProperties(input).get());
        break;
    case 4:
        readClient(graph.clients[id], HostileProperties(input).get());
        break;
    case 5:
        if (const auto link = readLink(HostileProperties(input).get()))
            graph.links[id] = *link;
        break;
    default:
        graph.defaultSourceName = readDefault(input.ConsumeRandomLengthString(256).c_str());
        graph.configuredRate = readRate(input.ConsumeRandomLengthString(16).c_str());
        break;
    }
}

bool isOf(const Graph &graph, GlobalId port, PortDirection direction)
{
    const GraphPort *const found = graph.port(port);
    return found != nullptr && found->direction == direction;
}

void plan(FuzzedDataProvider &input, const Graph &graph)
{
    LinkWishes wishes;
    wishes.outputs.push_back({input.ConsumeIntegralInRange<GlobalId>(0, 12), input.ConsumeRandomLengthString(16)});
    wishes.inputs.push_back({input.ConsumeIntegralInRange<GlobalId>(0, 12)});
    wishes.taps.push_back({input.ConsumeIntegralInRange<GlobalId>(0, 12), {input.ConsumeIntegral<std::int32_t>()}, {}});
    for (const GraphLink &link : planLinks(graph, wishes)) {
        require(isOf(graph, link.outputPort, PortDirection::output));
        require(isOf(graph, link.inputPort, PortDirection::input));
    }
    for (const GraphNode *const device : graph.devices())
        require(graph.isDevice(*device) && graph.playbackPorts(*device).size() <= graph.ports.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    Graph graph;
    const int objects = input.ConsumeIntegralInRange(0, 60);
    for (int i = 0; i < objects; ++i)
        addObject(input, graph);
    plan(input, graph);
    return 0;
}
