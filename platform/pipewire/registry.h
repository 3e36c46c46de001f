#pragma once

#include "platform/pipewire/graph.h"
#include "platform/pipewire/pw_handles.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

struct pw_registry;
struct spa_dict;
struct spa_pod;

namespace tolvenary
{

/// Mirrors the server's objects into a Graph for the life of one connection. Control thread.
class Registry
{
  public:
    /// `changed` is called after each change of the graph, `removed` before an object leaves it.
    Registry(pw_core *core, Graph &graph, std::function<void()> changed, std::function<void(GlobalId)> removed);
    ~Registry();
    Registry(const Registry &) = delete;
    Registry &operator=(const Registry &) = delete;

    /// Asks the server to end the object.
    void destroy(GlobalId id);
    /// Asks for the session's defaults once more, in case that a change did not reach us. Until the session manager has
    /// answered, the server reads nothing that we send.
    void readDefaultsAnew();

    /// While it is wanted, the server tells of each cycle, at some cost.
    void watchCycles(bool wanted);
    /// Nodes that had not finished when their last cycle was over; none before the server has told of one that this
    /// node took part in.
    std::optional<std::set<GlobalId>> unfinishedBeside(GlobalId node) const;

  private:
    struct Events;
    struct Bound;

    void globalAdded(GlobalId id, const char *type, std::uint32_t version, const spa_dict *properties);
    void globalRemoved(GlobalId id);
    void bind(GlobalId id, const char *type, std::uint32_t version, const void *events);
    void nodeAdded(GlobalId id, const spa_dict *properties);
    void portAdded(GlobalId id, const spa_dict *properties);
    void linkAdded(GlobalId id, const spa_dict *properties);
    void clientAdded(GlobalId id, const spa_dict *properties);
    void nodeInfo(GlobalId id, const spa_dict *properties, bool isWhole);
    void clientInfo(GlobalId id, const spa_dict *properties);
    void defaultsChanged(const char *key, const char *value);
    void settingsChanged(const char *key, const char *value);
    void cyclesTold(const spa_pod *cycles);

    Graph &m_graph;
    std::function<void()> m_changed;
    std::function<void(GlobalId)> m_removed;
    PwHandle<pw_proxy> m_registry;
    PwHandle<spa_hook> m_hook;
    std::map<GlobalId, std::unique_ptr<Bound>> m_bound;
    std::optional<GlobalId> m_defaults;
    std::optional<GlobalId> m_profiler;
    std::map<GlobalId, bool> m_hasFinished; ///< each node, when its last cycle was over; while cycles are watched
};

} // namespace tolvenary
