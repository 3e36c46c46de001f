#pragma once

#include "platform/pipewire/graph.h"

#include <unordered_map>
#include <unordered_set>

namespace tolvenary
{

/// Where sound comes from in a graph, through links and through loopbacks, sorted once to be asked for many nodes.
/// Holds for as long as the graph does not change.
class SoundPaths
{
  public:
    explicit SoundPaths(const Graph &graph);

    /// True when what comes out of `node` has come out of a node for which `matches` holds, or when it holds for `node`
    /// itself.
    template <typename Matches> bool carriesSoundOf(const GraphNode &node, Matches matches) const;

    /// True for a loopback that nothing plays into yet: whose sound it will carry is still to be seen.
    bool isIdleLoopback(const GraphNode &node) const;

  private:
    using Ids = std::vector<GlobalId>;

    /// Those that play into the node, then those of its link group.
    void addUpstream(const GraphNode &node, Ids &found, std::unordered_set<GlobalId> &known) const;
    /// Those of its link group whose sound may come out of the node.
    Ids feedersInGroup(const GraphNode &node) const;

    const Graph &m_graph;
    std::unordered_map<GlobalId, Ids> m_linkedInto;
    std::unordered_map<std::string, Ids> m_groups;
};

template <typename Matches> bool SoundPaths::carriesSoundOf(const GraphNode &node, Matches matches) const
{
    Ids found{node.id};
    std::unordered_set<GlobalId> known{node.id};
    for (std::size_t next = 0; next < found.size(); ++next) {
        const GraphNode *current = m_graph.node(found[next]);
        if (current == nullptr)
            continue;
        if (matches(*current))
            return true;
        addUpstream(*current, found, known);
    }
    return false;
}

} // namespace tolvenary
