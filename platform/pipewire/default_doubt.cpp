#include "platform/pipewire/default_doubt.h"

#include <algorithm>
#include <utility>

namespace tolvenary
{

namespace
{

std::set<GlobalId> heardBy(const Graph &graph, GlobalId stream)
{
    std::set<GlobalId> heard;
    for (const auto &[id, link] : graph.links) {
        const GraphPort *into = graph.port(link.inputPort);
        const GraphPort *outOf = graph.port(link.outputPort);
        if (into != nullptr && outOf != nullptr && into->nodeId == stream)
            heard.insert(outOf->nodeId);
    }
    return heard;
}

} // namespace

bool DefaultDoubt::arises(const Graph &graph, GlobalId stream)
{
    const std::set<GlobalId> before = std::exchange(m_heard, heardBy(graph, stream));
    return std::ranges::any_of(m_heard, [&](GlobalId id) {
        const GraphNode *source = graph.node(id);
        return source != nullptr && !before.contains(id) && source->name != graph.defaultSourceName;
    });
}

} // namespace tolvenary
