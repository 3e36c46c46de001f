#include "bench/graph_watch.h"

#include "tests/session/support/virtual_devices.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <stdexcept>

namespace tolvenary::bench
{

namespace
{

constexpr const char *nodeName = "graph-watch";

class ThreadLoopLock
{
  public:
    explicit ThreadLoopLock(pw_thread_loop *loop) : m_loop(loop) { pw_thread_loop_lock(m_loop); }
    ~ThreadLoopLock() { pw_thread_loop_unlock(m_loop); }
    ThreadLoopLock(const ThreadLoopLock &) = delete;
    ThreadLoopLock &operator=(const ThreadLoopLock &) = delete;

  private:
    pw_thread_loop *m_loop;
};

} // namespace

struct GraphWatch::Client {
    Client();
    ~Client();
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    void process(std::uint32_t frames); // real-time
    void added(std::uint32_t id, const char *type, const spa_dict *properties);
    void removed(std::uint32_t id);

    static const pw_filter_events filterEvents;
    static const pw_registry_events registryEvents;

    pw_thread_loop *loop = nullptr;
    pw_context *context = nullptr;
    pw_core *core = nullptr;
    pw_registry *registry = nullptr;
    pw_filter *filter = nullptr;
    void *port = nullptr;
    spa_hook filterHook{};
    spa_hook registryHook{};

    std::atomic<float> level = HUGE_VALF;
    std::atomic<Clock::rep> heardAt = 0;
    std::atomic<bool> isSilent = true;

    // Under the loop's lock.
    std::map<std::uint32_t, std::string> nodes;
    std::map<std::string, Clock::time_point> lastGone; ///< by name
};

const pw_filter_events GraphWatch::Client::filterEvents = {
    .version = PW_VERSION_FILTER_EVENTS,
    .destroy = nullptr,
    .state_changed = nullptr,
    .io_changed = nullptr,
    .param_changed = nullptr,
    .add_buffer = nullptr,
    .remove_buffer = nullptr,
    .process =
        [](void *client, spa_io_position *position) {
            static_cast<Client *>(client)->process(static_cast<std::uint32_t>(position->clock.duration));
        },
    .drained = nullptr,
    .command = nullptr,
};

const pw_registry_events GraphWatch::Client::registryEvents = {
    .version = PW_VERSION_REGISTRY_EVENTS,
    .global = [](void *client, std::uint32_t id, std::uint32_t, const char *type, std::uint32_t,
                 const spa_dict *properties) { static_cast<Client *>(client)->added(id, type, properties); },
    .global_remove = [](void *client, std::uint32_t id) { static_cast<Client *>(client)->removed(id); },
};

GraphWatch::Client::Client()
{
    pw_init(nullptr, nullptr);
    loop = pw_thread_loop_new("graph-watch", nullptr);
    pw_thread_loop_start(loop);
    const ThreadLoopLock lock(loop);
    context = pw_context_new(pw_thread_loop_get_loop(loop),
                             pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
    core = pw_context_connect(context, nullptr, 0);
    if (core == nullptr)
        throw std::runtime_error("the watch cannot connect");
    registry = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry, &registryHook, &registryEvents, this);
    filter = pw_filter_new(core, nodeName,
                           pw_properties_new(PW_KEY_NODE_NAME, nodeName, PW_KEY_MEDIA_TYPE, "Audio", nullptr));
    pw_filter_add_listener(filter, &filterHook, &filterEvents, this);
    port = pw_filter_add_port(
        filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
        pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME, "input", nullptr), nullptr,
        0);
    if (pw_filter_connect(filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error("the watch cannot listen");
}

GraphWatch::Client::~Client()
{
    {
        const ThreadLoopLock lock(loop);
        pw_filter_destroy(filter);
        spa_hook_remove(&registryHook);
        pw_proxy_destroy(reinterpret_cast<pw_proxy *>(registry));
        pw_core_disconnect(core);
        pw_context_destroy(context);
    }
    pw_thread_loop_stop(loop);
    pw_thread_loop_destroy(loop);
    pw_deinit();
}

void GraphWatch::Client::process(std::uint32_t frames)
{
    const auto *const samples = static_cast<const float *>(pw_filter_get_dsp_buffer(port, frames));
    float peak = 0;
    for (std::uint32_t i = 0; samples != nullptr && i < frames; ++i)
        peak = std::max(peak, std::abs(samples[i]));
    isSilent.store(peak == 0, std::memory_order_relaxed);
    if (peak >= level.load(std::memory_order_relaxed) && heardAt.load(std::memory_order_relaxed) == 0)
        heardAt.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
}

void GraphWatch::Client::added(std::uint32_t id, const char *type, const spa_dict *properties)
{
    const char *const name = properties != nullptr ? spa_dict_lookup(properties, PW_KEY_NODE_NAME) : nullptr;
    if (name != nullptr && std::string(type) == PW_TYPE_INTERFACE_Node)
        nodes[id] = name;
}

void GraphWatch::Client::removed(std::uint32_t id)
{
    const auto node = nodes.extract(id);
    if (!node.empty())
        lastGone[node.mapped()] = Clock::now();
}

GraphWatch::GraphWatch(session::PrivateSession &session, const std::string &port) : m_client(std::make_unique<Client>())
{
    session::link(session, port, std::string(nodeName) + ":input");
}

GraphWatch::~GraphWatch() = default;

void GraphWatch::listenFor(float level)
{
    m_client->heardAt.store(0);
    m_client->level.store(level);
}

std::optional<GraphWatch::Clock::time_point> GraphWatch::heard() const
{
    const Clock::rep at = m_client->heardAt.load();
    return at == 0 ? std::nullopt : std::optional(Clock::time_point(Clock::duration(at)));
}

bool GraphWatch::isSilent() const
{
    return m_client->isSilent.load();
}

std::optional<GraphWatch::Clock::time_point> GraphWatch::gone(const std::string &names) const
{
    const ThreadLoopLock lock(m_client->loop);
    for (const auto &[id, name] : m_client->nodes)
        if (name.starts_with(names))
            return std::nullopt;
    std::optional<Clock::time_point> last;
    for (const auto &[name, when] : m_client->lastGone)
        if (name.starts_with(names) && (!last || when > *last))
            last = when;
    return last;
}

} // namespace tolvenary::bench
