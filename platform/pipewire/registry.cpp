#include "platform/pipewire/registry.h"

#include "platform/pipewire/cycle_reader.h"
#include "platform/pipewire/graph_reader.h"

#include <cstring>
#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

// Needs what the above include.
#include <pipewire/extensions/profiler.h>

namespace tolvenary
{

// An object whose own events we listen to: a node or client for all its properties, a metadata for its values.
struct Registry::Bound {
    Registry &registry;
    GlobalId id;
    PwHandle<pw_proxy> proxy;
    PwHandle<spa_hook> hook = makeHook(); // declared last: taken out before the proxy goes
};

struct Registry::Events {
    static pw_registry_events registry()
    {
        pw_registry_events events{};
        events.version = PW_VERSION_REGISTRY_EVENTS;
        events.global = [](void *data, std::uint32_t id, std::uint32_t, const char *type, std::uint32_t version,
                           const spa_dict *properties) {
            static_cast<Registry *>(data)->globalAdded(id, type, version, properties);
        };
        events.global_remove = [](void *data, std::uint32_t id) { static_cast<Registry *>(data)->globalRemoved(id); };
        return events;
    }

    static pw_node_events node()
    {
        pw_node_events events{};
        events.version = PW_VERSION_NODE_EVENTS;
        events.info = [](void *data, const pw_node_info *info) {
            const auto *bound = static_cast<const Bound *>(data);
            if (info->change_mask & PW_NODE_CHANGE_MASK_PROPS)
                bound->registry.nodeInfo(bound->id, info->props, true);
        };
        return events;
    }

    static pw_client_events client()
    {
        pw_client_events events{};
        events.version = PW_VERSION_CLIENT_EVENTS;
        events.info = [](void *data, const pw_client_info *info) {
            const auto *bound = static_cast<const Bound *>(data);
            if (info->change_mask & PW_CLIENT_CHANGE_MASK_PROPS)
                bound->registry.clientInfo(bound->id, info->props);
        };
        return events;
    }

    template <void (Registry::*Changed)(const char *, const char *)> static pw_metadata_events metadata()
    {
        pw_metadata_events events{};
        events.version = PW_VERSION_METADATA_EVENTS;
        events.property = [](void *data, std::uint32_t subject, const char *key, const char *, const char *value) {
            Registry &registry = static_cast<const Bound *>(data)->registry;
            if (subject == PW_ID_CORE)
                (registry.*Changed)(key, value);
            return 0;
        };
        return events;
    }

    static pw_profiler_events profiler()
    {
        pw_profiler_events events{};
        events.version = PW_VERSION_PROFILER_EVENTS;
        events.profile = [](void *data, const spa_pod *pod) {
            static_cast<const Bound *>(data)->registry.cyclesTold(pod);
        };
        return events;
    }

    static const pw_registry_events registryEvents;
    static const pw_node_events nodeEvents;
    static const pw_client_events clientEvents;
    static const pw_metadata_events defaultsEvents;
    static const pw_metadata_events settingsEvents;
    static const pw_profiler_events profilerEvents;
};

const pw_registry_events Registry::Events::registryEvents = Events::registry();
const pw_node_events Registry::Events::nodeEvents = Events::node();
const pw_client_events Registry::Events::clientEvents = Events::client();
const pw_metadata_events Registry::Events::defaultsEvents = Events::metadata<&Registry::defaultsChanged>();
const pw_metadata_events Registry::Events::settingsEvents = Events::metadata<&Registry::settingsChanged>();

const pw_profiler_events Registry::Events::profilerEvents = Events::profiler();

Registry::Registry(pw_core *core, Graph &graph, std::function<void()> changed, std::function<void(GlobalId)> removed)
    : m_graph(graph),
      m_changed(std::move(changed)),
      m_removed(std::move(removed)),
      m_registry(reinterpret_cast<pw_proxy *>(pw_core_get_registry(core, PW_VERSION_REGISTRY, 0))),
      m_hook(makeHook())
{
    auto *registry = reinterpret_cast<pw_registry *>(m_registry.get());
    pw_registry_add_listener(registry, m_hook.get(), &Events::registryEvents, this);
}

Registry::~Registry()
{
    m_bound.clear();
    m_graph.clear();
}

void Registry::destroy(GlobalId id)
{
    pw_registry_destroy(reinterpret_cast<pw_registry *>(m_registry.get()), id);
}

void Registry::globalAdded(GlobalId id, const char *type, std::uint32_t version, const spa_dict *properties)
{
    const std::string_view kind(type);
    if (kind == PW_TYPE_INTERFACE_Node) {
        nodeAdded(id, properties);
        bind(id, type, version, &Events::nodeEvents);
    } else if (kind == PW_TYPE_INTERFACE_Client) {
        clientAdded(id, properties);
        bind(id, type, version, &Events::clientEvents);
    } else if (kind == PW_TYPE_INTERFACE_Port) {
        portAdded(id, properties);
    } else if (kind == PW_TYPE_INTERFACE_Link) {
        linkAdded(id, properties);
    } else if (kind == PW_TYPE_INTERFACE_Metadata) {
        const std::string name = readText(properties, PW_KEY_METADATA_NAME);
        if (name == "default") {
            m_defaults = id;
            readDefaultsAnew();
        } else if (name == "settings") {
            bind(id, type, version, &Events::settingsEvents);
        }
        return;
    } else {
        if (kind == PW_TYPE_INTERFACE_Profiler)
            m_profiler = id;
        return;
    }
    m_changed();
}

void Registry::readDefaultsAnew()
{
    if (m_defaults)
        bind(*m_defaults, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, &Events::defaultsEvents);
}

void Registry::watchCycles(bool wanted)
{
    if (!m_profiler || wanted == m_bound.contains(*m_profiler))
        return;
    m_hasFinished.clear();
    if (wanted)
        bind(*m_profiler, PW_TYPE_INTERFACE_Profiler, PW_VERSION_PROFILER, &Events::profilerEvents);
    else
        m_bound.erase(*m_profiler);
}

std::optional<std::set<GlobalId>> Registry::unfinishedBeside(GlobalId node) const
{
    if (!m_hasFinished.contains(node))
        return std::nullopt;
    std::set<GlobalId> unfinished;
    for (const auto &[id, hasFinished] : m_hasFinished) {
        if (!hasFinished)
            unfinished.insert(id);
    }
    return unfinished;
}

void Registry::bind(GlobalId id, const char *type, std::uint32_t version, const void *events)
{
    auto *registry = reinterpret_cast<pw_registry *>(m_registry.get());
    auto *proxy = static_cast<pw_proxy *>(pw_registry_bind(registry, id, type, version, 0));
    if (proxy == nullptr)
        return;
    auto bound = std::make_unique<Bound>(Bound{*this, id, PwHandle<pw_proxy>(proxy)});
    pw_proxy_add_object_listener(proxy, bound->hook.get(), events, bound.get());
    m_bound[id] = std::move(bound);
}

void Registry::globalRemoved(GlobalId id)
{
    m_removed(id);
    m_bound.erase(id);
    m_hasFinished.erase(id);
    if (id == m_defaults)
        m_defaults.reset();
    if (id == m_profiler)
        m_profiler.reset();
    m_graph.nodes.erase(id);
    m_graph.ports.erase(id);
    m_graph.links.erase(id);
    m_graph.clients.erase(id);
    m_changed();
}

void Registry::nodeAdded(GlobalId id, const spa_dict *properties)
{
    GraphNode &node = m_graph.nodes[id];
    node.id = id;
    node.serial = readSerial(id, properties);
    nodeInfo(id, properties, false);
}

void Registry::nodeInfo(GlobalId id, const spa_dict *properties, bool isWhole)
{
    const auto found = m_graph.nodes.find(id);
    if (found == m_graph.nodes.end())
        return;
    readNode(found->second, properties);
    found->second.isWhole = isWhole;
    m_changed();
}

void Registry::portAdded(GlobalId id, const spa_dict *properties)
{
    m_graph.ports[id] = readPort(id, properties);
}

void Registry::linkAdded(GlobalId id, const spa_dict *properties)
{
    if (const auto link = readLink(properties))
        m_graph.links[id] = *link;
}

void Registry::clientAdded(GlobalId id, const spa_dict *properties)
{
    m_graph.clients[id].serial = readSerial(id, properties);
    clientInfo(id, properties);
}

void Registry::clientInfo(GlobalId id, const spa_dict *properties)
{
    const auto found = m_graph.clients.find(id);
    if (found == m_graph.clients.end())
        return;
    readClient(found->second, properties);
    m_changed();
}

void Registry::defaultsChanged(const char *key, const char *value)
{
    if (key != nullptr && std::strcmp(key, "default.audio.source") != 0)
        return;
    m_graph.defaultSourceName = readDefault(value);
    m_changed();
}

void Registry::settingsChanged(const char *key, const char *value)
{
    if (key == nullptr || value == nullptr)
        return;
    if (std::strcmp(key, "clock.rate") == 0)
        m_graph.configuredRate = readRate(value);
    else if (std::strcmp(key, "clock.force-rate") == 0)
        m_graph.forcedRate = readRate(value);
    m_changed();
}

void Registry::cyclesTold(const spa_pod *cycles)
{
    readFinished(cycles, m_hasFinished);
}

} // namespace tolvenary
