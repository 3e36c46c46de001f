#pragma once

#include "platform/pipewire/client_rights.h"
#include "platform/pipewire/connection.h"
#include "platform/pipewire/graph.h"
#include "platform/pipewire/heard_nodes.h"
#include "platform/pipewire/link_plan.h"
#include "platform/pipewire/linker.h"
#include "platform/pipewire/object_ids.h"
#include "platform/pipewire/own_nodes.h"
#include "platform/pipewire/registry.h"
#include "platform/pipewire/stall_watch.h"

#include <memory>
#include <set>

namespace tolvenary
{

/// Is told of changes of the graph. Called under the control lock.
class GraphWatcher
{
  public:
    virtual ~GraphWatcher() = default;

    /// Something has changed, on the server's side or ours; links are planned next.
    virtual void graphChanged() = 0;
    /// The connection has ended, and with it our nodes; they will be made again on the next one.
    virtual void serverLost() = 0;
};

/// Our part of the server's graph: the nodes that shall be there, and their links. Whenever something changes, on our
/// side or the server's, it makes and ends links accordingly, also after the server has been restarted.
class GraphSession final : private Connection::Observer
{
  public:
    GraphSession();
    ~GraphSession() override;
    GraphSession(const GraphSession &) = delete;
    GraphSession &operator=(const GraphSession &) = delete;

    Connection &connection() { return m_connection; }

    /// The driver group that all our nodes share.
    const std::string &group() const { return m_group; }

    // All of these: under the control lock.

    const Graph &graph() const { return m_graph; }
    ObjectIds &ids() { return m_ids; }

    /// The node is ours until it is retired.
    void add(FilterNode &node, NodeRole role);
    /// Takes a node whose gate is closed out of the graph, and lets it go.
    void retire(std::unique_ptr<FilterNode> node);
    /// Has the server end the node of that id, if it has one yet, and keeps our half of it until everything has arrived
    /// that the server had sent to it. Nobody waits, so that several nodes leave together.
    void letGo(std::optional<GlobalId> id, std::shared_ptr<void> ours);

    void addWatcher(GraphWatcher &watcher) { m_watchers.insert(&watcher); }
    void removeWatcher(GraphWatcher &watcher) { m_watchers.erase(&watcher); }

    /// Waits until the node and all its ports are in the graph.
    OSStatus waitUntilThere(const FilterNode &node);
    /// Waits until all links that an output node should have are there and agreed on, or one has failed.
    OSStatus waitUntilLinked(const FilterNode &output);
    /// Waits until the node has run a cycle; not an error if it does not.
    void waitUntilRunning(const FilterNode &node);

    /// The device that the output node is for, where it is really linked to it; else 0.
    AudioObjectID linkedDevice(FilterNode &output);

    /// The source that is our microphone now; null without one.
    const GraphNode *microphone() const { return microphoneOf(m_graph, wishes()); }
    /// Call it when a change of the default source may have been missed.
    void readDefaultsAnew();
    /// Whether the microphone hangs, and so is not linked for now.
    bool isMicrophoneHeld() const { return m_nodes.isMicrophoneHeld(); }
    /// The graph's rate: as our nodes see it, or before that as it is configured.
    std::uint32_t rate() const;

    /// Whether the server denies us other clients' sound. Asks it, and waits for the answer unless it hangs.
    bool isCaptureDenied();

    AudioObjectID deviceId(const GraphNode &device) { return m_ids.ofDevice(device.name); }
    /// The device of that id, if it is there now.
    const GraphNode *device(AudioObjectID id) const;
    AudioObjectID clientId(const GraphClient &client) { return m_ids.ofClient(client.serial); }
    const GraphClient *client(AudioObjectID id) const;

  private:
    void connected(pw_core *core) override;
    void disconnecting() override;
    void accessDenied() override;
    void update() override;
    void tick() override;

    void nodesChanged();
    void keepProbes();
    std::shared_ptr<FilterNode> makeProbe(GlobalId stream);
    bool isLinked(GlobalId stream, const FilterNode &probe) const;
    std::optional<std::set<GlobalId>> unfinished() const;
    std::set<GlobalId> awaitedNodes() const;
    LinkWishes wishes() const { return m_nodes.wishes(m_watch.verdict()); }
    std::set<GraphLink> plannedLinks() const { return planLinks(m_graph, wishes()); }
    bool isThere(const FilterNode &node) const;
    OSStatus linkStatus(const FilterNode &output) const;
    bool isCarrying(const GraphLink &link) const;

    std::string m_group;
    Graph m_graph;
    ObjectIds m_ids;
    OwnNodes m_nodes;
    std::map<GlobalId, std::shared_ptr<FilterNode>> m_probes; ///< one for each stream that is tried
    std::vector<std::shared_ptr<void>> m_leaving;
    std::set<GraphWatcher *> m_watchers;
    std::unique_ptr<Registry> m_registry;
    std::unique_ptr<Linker> m_linker;
    std::unique_ptr<ClientRights> m_rights;
    bool m_isDenied = false;
    std::set<GlobalId> m_tappedStreams; ///< as of the last update, for finding them at each tick would be costly
    StallWatch m_watch;
    Connection m_connection; // declared last: its thread calls back into all of the above
};

} // namespace tolvenary
