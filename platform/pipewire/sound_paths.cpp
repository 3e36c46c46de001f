#include "platform/pipewire/sound_paths.h"

namespace tolvenary
{

SoundPaths::SoundPaths(const Graph &graph) : m_graph(graph)
{
    for (const auto &[id, link] : graph.links) {
        const GraphPort *into = graph.port(link.inputPort);
        const GraphPort *outOf = graph.port(link.outputPort);
        if (into != nullptr && outOf != nullptr)
            m_linkedInto[into->nodeId].push_back(outOf->nodeId);
    }
    for (const auto &[id, node] : graph.nodes) {
        if (!node.linkGroup.empty())
            m_groups[node.linkGroup].push_back(id);
    }
}

void SoundPaths::addUpstream(const GraphNode &node, Ids &found, std::unordered_set<GlobalId> &known) const
{
    const auto add = [&](const auto &lists, const auto &key) {
        const auto list = lists.find(key);
        if (list == lists.end())
            return;
        for (const GlobalId id : list->second) {
            if (known.insert(id).second)
                found.push_back(id);
        }
    };
    add(m_linkedInto, node.id);
    add(m_groups, node.linkGroup);
}

} // namespace tolvenary
