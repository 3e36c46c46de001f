#include "platform/pipewire/sound_paths.h"

#include <algorithm>

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

bool SoundPaths::isIdleLoopback(const GraphNode &node) const
{
    const auto group = m_groups.find(node.linkGroup);
    if (group == m_groups.end() ||
        std::ranges::any_of(group->second, [this](GlobalId id) { return m_linkedInto.contains(id); }))
        return false;
    return std::ranges::any_of(
        group->second, [this](GlobalId id) { return m_graph.node(id)->mediaClass.starts_with("Stream/Input/"); });
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
