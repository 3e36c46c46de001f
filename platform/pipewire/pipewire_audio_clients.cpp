#include "platform/pipewire/pipewire_audio_clients.h"

#include <algorithm>
#include <cerrno>

namespace tolvenary
{

Result<std::vector<AudioClient>> PipeWireAudioClients::clientsWithStreams()
{
    const Connection::Lock lock(m_session.connection());
    if (m_session.connection().core() == nullptr)
        return failure(-ENOTCONN, "The sound server, PipeWire, is not running.");
    if (!m_session.connection().isResponsive())
        return failure(-ETIMEDOUT, "The sound server does not answer.");
    const Graph &graph = m_session.graph();
    std::vector<const GraphNode *> streams;
    for (const auto &[id, node] : graph.nodes) {
        if (node.mediaClass.starts_with("Stream/") && node.mediaClass.ends_with("/Audio") && node.clientId)
            streams.push_back(&node);
    }
    std::ranges::sort(streams, {}, [](const GraphNode *node) { return node->serial; });
    std::vector<AudioClient> found;
    for (const GraphNode *stream : streams) {
        const auto client = graph.clients.find(*stream->clientId);
        if (client == graph.clients.end() || !client->second.processId)
            continue;
        const std::int32_t process = *client->second.processId;
        if (std::ranges::find(found, process, &AudioClient::processID) == found.end())
            found.push_back({process, client->second.applicationName, client->second.binary});
    }
    return found;
}

} // namespace tolvenary
