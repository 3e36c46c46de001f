#include "platform/pipewire/sound_paths.h"

#include <algorithm>
#include <string_view>

namespace tolvenary
{

namespace
{

constexpr std::string_view capturing = "Stream/Input/Audio";

} // namespace

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
    const auto add = [&](const Ids &ids) {
        for (const GlobalId id : ids) {
            if (known.insert(id).second)
                found.push_back(id);
        }
    };
    if (const auto linked = m_linkedInto.find(node.id); linked != m_linkedInto.end())
        add(linked->second);
    add(feedersInGroup(node));
}

// A loopback hands on everything, whatever its two ends call themselves. One with four ends, such as an echo canceller,
// is two in one: its source gives what it captures, and it plays what its sink takes as a reference.
SoundPaths::Ids SoundPaths::feedersInGroup(const GraphNode &node) const
{
    const auto group = m_groups.find(node.linkGroup);
    if (group == m_groups.end() || node.mediaClass == capturing)
        return {};
    std::string_view feeder;
    if (node.mediaClass.starts_with("Audio/Source"))
        feeder = capturing;
    else if (node.mediaClass == "Stream/Output/Audio")
        feeder = "Audio/Sink";
    Ids feeders;
    for (const GlobalId id : group->second) {
        if (m_graph.node(id)->mediaClass == feeder)
            feeders.push_back(id);
    }
    return feeders.empty() ? group->second : feeders;
}

} // namespace tolvenary
