#include "platform/pipewire/heard_nodes.h"

#include "platform/pipewire/sound_paths.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

bool isTapped(const Graph &graph, const SoundPaths &paths, const GraphNode &node, const TapWish &wish)
{
    if (node.mediaClass != "Stream/Output/Audio")
        return false;
    const std::optional<std::int32_t> process = graph.processOf(node);
    if (wish.onlyProcess && process != wish.onlyProcess)
        return false;
    if (process && wish.excludedProcesses.contains(*process))
        return false;
    // A loopback plays the device's sound from the moment in which it is linked to it; to ask then would be too late.
    if (!node.isWhole || paths.isIdleLoopback(node))
        return false;
    // What has passed through a sink was captured where it went in; a second time would be an echo, and what plays our
    // device back would howl.
    return !paths.carriesSoundOf(node, [&](const GraphNode &upstream) { return graph.isSink(upstream); });
}

} // namespace

const GraphNode *microphoneOf(const Graph &graph, const LinkWishes &wishes)
{
    if (graph.defaultSourceName.empty())
        return nullptr;
    // Without a real source a session manager may name a sink: its monitor is what the applications play, and they
    // would be in the mix twice.
    const GraphNode *source = graph.sourceNamed(graph.defaultSourceName);
    if (source == nullptr)
        return nullptr;
    const auto isOurs = [&](const GraphNode &upstream) {
        return std::ranges::any_of(wishes.outputs, [&](const OutputWish &output) {
            return output.nodeId == upstream.id || output.deviceName == upstream.name;
        });
    };
    return SoundPaths(graph).carriesSoundOf(*source, isOurs) ? nullptr : source;
}

std::set<GlobalId> tappedStreams(const Graph &graph, const TapWish &wish)
{
    const SoundPaths paths(graph);
    std::set<GlobalId> streams;
    for (const auto &[id, node] : graph.nodes) {
        if (isTapped(graph, paths, node, wish))
            streams.insert(id);
    }
    return streams;
}

} // namespace tolvenary
