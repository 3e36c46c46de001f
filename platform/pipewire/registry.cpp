#include "platform/pipewire/registry.h"

#include <charconv>
#include <cstring>
#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>
#include <spa/utils/json.h>

namespace tolvenary
{

namespace
{

std::string text(const spa_dict *properties, const char *key)
{
    const char *value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
    return value == nullptr ? std::string() : std::string(value);
}

template <typename Number> std::optional<Number> number(const std::string &digits)
{
    Number value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && end != digits.data() ? std::optional(value) : std::nullopt;
}

template <typename Number> std::optional<Number> number(const spa_dict *properties, const char *key)
{
    return number<Number>(text(properties, key));
}

// The "name" of { "name": "…" }.
std::string nameIn(const char *json)
{
    std::array<spa_json, 2> levels{};
    std::array<char, 1024> key{};
    std::array<char, 1024> value{};
    spa_json_init(&levels[0], json, std::strlen(json));
    if (spa_json_enter_object(&levels[0], &levels[1]) <= 0)
        return {};
    while (spa_json_get_string(&levels[1], key.data(), key.size()) > 0) {
        if (spa_json_get_string(&levels[1], value.data(), value.size()) <= 0)
            return {};
        if (std::strcmp(key.data(), "name") == 0)
            return value.data();
    }
    return {};
}

} // namespace

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
                bound->registry.nodeInfo(bound->id, info->props);
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

    static const pw_registry_events registryEvents;
    static const pw_node_events nodeEvents;
    static const pw_client_events clientEvents;
    static const pw_metadata_events defaultsEvents;
    static const pw_metadata_events settingsEvents;
};

const pw_registry_events Registry::Events::registryEvents = Events::registry();
const pw_node_events Registry::Events::nodeEvents = Events::node();
const pw_client_events Registry::Events::clientEvents = Events::client();
const pw_metadata_events Registry::Events::defaultsEvents = Events::metadata<&Registry::defaultsChanged>();
const pw_metadata_events Registry::Events::settingsEvents = Events::metadata<&Registry::settingsChanged>();

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
        const std::string name = text(properties, PW_KEY_METADATA_NAME);
        if (name == "default")
            bind(id, type, version, &Events::defaultsEvents);
        else if (name == "settings")
            bind(id, type, version, &Events::settingsEvents);
        return;
    } else {
        return;
    }
    m_changed();
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
    node.serial = number<std::uint64_t>(properties, PW_KEY_OBJECT_SERIAL).value_or(id);
    nodeInfo(id, properties);
}

void Registry::nodeInfo(GlobalId id, const spa_dict *properties)
{
    const auto found = m_graph.nodes.find(id);
    if (found == m_graph.nodes.end())
        return;
    GraphNode &node = found->second;
    node.name = text(properties, PW_KEY_NODE_NAME);
    node.description = text(properties, PW_KEY_NODE_DESCRIPTION);
    node.nick = text(properties, PW_KEY_NODE_NICK);
    node.mediaClass = text(properties, PW_KEY_MEDIA_CLASS);
    node.linkGroup = text(properties, PW_KEY_NODE_LINK_GROUP);
    node.clientId = number<GlobalId>(properties, PW_KEY_CLIENT_ID);
    m_changed();
}

void Registry::portAdded(GlobalId id, const spa_dict *properties)
{
    GraphPort &port = m_graph.ports[id];
    port.id = id;
    port.nodeId = number<GlobalId>(properties, PW_KEY_NODE_ID).value_or(0);
    port.index = number<std::uint32_t>(properties, PW_KEY_PORT_ID).value_or(0);
    port.direction = text(properties, PW_KEY_PORT_DIRECTION) == "in" ? PortDirection::input : PortDirection::output;
    port.isMonitor = text(properties, PW_KEY_PORT_MONITOR) == "true";
    port.name = text(properties, PW_KEY_PORT_NAME);
    port.channel = text(properties, PW_KEY_AUDIO_CHANNEL);
}

void Registry::linkAdded(GlobalId id, const spa_dict *properties)
{
    const auto output = number<GlobalId>(properties, PW_KEY_LINK_OUTPUT_PORT);
    const auto input = number<GlobalId>(properties, PW_KEY_LINK_INPUT_PORT);
    if (output && input)
        m_graph.links[id] = {*output, *input};
}

void Registry::clientAdded(GlobalId id, const spa_dict *properties)
{
    m_graph.clients[id].serial = number<std::uint64_t>(properties, PW_KEY_OBJECT_SERIAL).value_or(id);
    clientInfo(id, properties);
}

void Registry::clientInfo(GlobalId id, const spa_dict *properties)
{
    const auto found = m_graph.clients.find(id);
    if (found == m_graph.clients.end())
        return;
    GraphClient &client = found->second;
    // Behind the pulse server every client's socket belongs to that server; only there is the application's own word
    // for its process the better one.
    const bool isPulse = text(properties, PW_KEY_CLIENT_API) == "pipewire-pulse";
    client.processId = number<std::int32_t>(properties, isPulse ? PW_KEY_APP_PROCESS_ID : PW_KEY_SEC_PID);
    client.applicationName = text(properties, PW_KEY_APP_NAME);
    client.binary = text(properties, PW_KEY_APP_PROCESS_BINARY);
    m_changed();
}

void Registry::defaultsChanged(const char *key, const char *value)
{
    if (key != nullptr && std::strcmp(key, "default.audio.source") != 0)
        return;
    m_graph.defaultSourceName = value == nullptr ? std::string() : nameIn(value);
    m_changed();
}

void Registry::settingsChanged(const char *key, const char *value)
{
    if (key == nullptr || value == nullptr)
        return;
    if (std::strcmp(key, "clock.rate") == 0)
        m_graph.configuredRate = number<std::uint32_t>(std::string(value)).value_or(0);
    else if (std::strcmp(key, "clock.force-rate") == 0)
        m_graph.forcedRate = number<std::uint32_t>(std::string(value)).value_or(0);
    m_changed();
}

} // namespace tolvenary
