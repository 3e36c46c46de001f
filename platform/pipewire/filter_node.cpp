#include "platform/pipewire/filter_node.h"

#include "platform/pipewire/chunk_claim.h"

#include <atomic>
#include <cstring>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

namespace tolvenary
{

namespace
{

// real-time: reads it once, even if the compiler would rather read it twice.
template <typename T> T readOnce(T &shared)
{
    return std::atomic_ref(shared).load(std::memory_order_relaxed);
}

// real-time: the samples of a cycle, or null. A port's mixer with nothing running behind it hands over a buffer marked
// empty, and one with a single link the player's own buffer.
const void *samplesIn(const spa_data &data, std::uint32_t frames)
{
    if (data.data == nullptr || (readOnce(data.chunk->flags) & SPA_CHUNK_FLAG_EMPTY) != 0)
        return nullptr;
    const ChunkClaim claim{readOnce(data.chunk->offset), readOnce(data.chunk->size)};
    return holdsCycle(claim, data.maxsize, frames) ? SPA_PTROFF(data.data, claim.offset, const void) : nullptr;
}

// real-time: what came in at a port, or null.
const void *takeInput(void *port, std::uint32_t frames)
{
    pw_buffer *buffer = pw_filter_dequeue_buffer(port);
    if (buffer == nullptr)
        return nullptr;
    const void *samples = samplesIn(buffer->buffer->datas[0], frames);
    pw_filter_queue_buffer(port, buffer);
    return samples;
}

// real-time: where to write what goes out of a port, or null. The other side takes part in choosing the length of the
// buffers; one that is too short for the cycle is handed back empty.
void *giveOutput(void *port, std::uint32_t frames)
{
    pw_buffer *buffer = pw_filter_dequeue_buffer(port);
    if (buffer == nullptr)
        return nullptr;
    const spa_data &data = buffer->buffer->datas[0];
    const bool isRoomy = data.data != nullptr && holdsCycle({0, data.maxsize}, data.maxsize, frames);
    data.chunk->offset = 0;
    data.chunk->size = isRoomy ? frames * std::uint32_t{sizeof(float)} : 0;
    data.chunk->stride = sizeof(float);
    data.chunk->flags = isRoomy ? SPA_CHUNK_FLAG_NONE : SPA_CHUNK_FLAG_EMPTY;
    pw_filter_queue_buffer(port, buffer);
    return isRoomy ? data.data : nullptr;
}

} // namespace

const float *Cycle::input(std::size_t port) const
{
    return static_cast<const float *>(m_ports[port]);
}
float *Cycle::output(std::size_t port) const
{
    return static_cast<float *>(m_ports[port]);
}

struct FilterNode::Events {
    static const pw_filter_events *table()
    {
        static const pw_filter_events events = [] {
            pw_filter_events made{};
            made.version = PW_VERSION_FILTER_EVENTS;
            made.state_changed = [](void *data, pw_filter_state, pw_filter_state state, const char *) {
                static_cast<FilterNode *>(data)->stateChanged(state);
            };
            made.process = [](void *data, spa_io_position *position) {
                static_cast<FilterNode *>(data)->processCycle(position);
            };
            return made;
        }();
        return &events;
    }
};

FilterNode::FilterNode(NodeSpec spec, Process process, std::function<void()> changed)
    : m_spec(std::move(spec)),
      m_process(std::move(process)),
      m_changed(std::move(changed)),
      m_buffers(m_spec.ports.size()),
      m_isActive(m_spec.isActive)
{
}

FilterNode::~FilterNode()
{
    m_gate.close();
    release();
}

void FilterNode::realize(pw_core *core)
{
    release();
    pw_properties *properties =
        pw_properties_new(PW_KEY_NODE_NAME, m_spec.name.c_str(), PW_KEY_NODE_DESCRIPTION, m_spec.description.c_str(),
                          PW_KEY_NODE_GROUP, m_spec.group.c_str(), PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY,
                          m_spec.category.c_str(), PW_KEY_MEDIA_ROLE, "DSP", PW_KEY_NODE_RATE, "1/48000",
                          PW_KEY_NODE_LOCK_RATE, "true", PW_KEY_NODE_ALWAYS_PROCESS, "true", nullptr);
    m_filter.reset(pw_filter_new(core, m_spec.name.c_str(), properties));
    m_madeAt = Clock::now();
    m_endedAfter.reset();
    m_hasFailed = !m_filter || !addPorts();
    if (m_hasFailed)
        return;
    m_hook = makeHook();
    pw_filter_add_listener(m_filter.get(), m_hook.get(), Events::table(), this);
    const int flags = PW_FILTER_FLAG_RT_PROCESS | (m_isActive ? 0 : PW_FILTER_FLAG_INACTIVE);
    m_hasFailed = pw_filter_connect(m_filter.get(), static_cast<pw_filter_flags>(flags), nullptr, 0) < 0;
}

bool FilterNode::addPorts()
{
    m_ports.clear();
    for (const PortSpec &port : m_spec.ports) {
        pw_properties *properties = pw_properties_new(PW_KEY_PORT_NAME, port.name.c_str(), PW_KEY_FORMAT_DSP,
                                                      "32 bit float mono audio", nullptr);
        if (port.isPositioned)
            pw_properties_set(properties, PW_KEY_AUDIO_CHANNEL, port.name.c_str());
        const spa_direction direction =
            port.direction == PortDirection::input ? SPA_DIRECTION_INPUT : SPA_DIRECTION_OUTPUT;
        void *added = pw_filter_add_port(m_filter.get(), direction, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
                                         properties, nullptr, 0);
        if (added == nullptr)
            return false;
        m_ports.push_back(added);
    }
    return true;
}

void FilterNode::release()
{
    // Without the hook no event comes any more; destroying the filter waits for the cycle that is running.
    m_hook.reset();
    m_filter.reset();
    m_rate.store(0, std::memory_order_relaxed);
}

std::optional<GlobalId> FilterNode::nodeId() const
{
    if (!m_filter)
        return std::nullopt;
    const std::uint32_t id = pw_filter_get_node_id(m_filter.get());
    return id == SPA_ID_INVALID ? std::nullopt : std::optional(id);
}

void FilterNode::setActive(bool active)
{
    m_isActive = active;
    if (m_filter)
        pw_filter_set_active(m_filter.get(), active);
}

void FilterNode::stateChanged(int state)
{
    m_hasFailed = m_hasFailed || state == PW_FILTER_STATE_ERROR;
    // When we let it go ourselves, the hook is already out: this was somebody else.
    if (state == PW_FILTER_STATE_UNCONNECTED)
        m_endedAfter = Clock::now() - m_madeAt;
    m_changed();
}

void FilterNode::processCycle(const spa_io_position *position)
{
    const auto frames = static_cast<std::uint32_t>(position->clock.duration);
    m_rate.store(position->clock.rate.denom, std::memory_order_relaxed);
    m_cycles.fetch_add(1, std::memory_order_relaxed);
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        const bool isInput = m_spec.ports[i].direction == PortDirection::input;
        m_buffers[i] = isInput ? const_cast<void *>(takeInput(m_ports[i], frames)) : nullptr;
    }
    if (frames == 0 || frames > maxFrames)
        return;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        if (m_spec.ports[i].direction == PortDirection::output && m_spec.ports[i].isPositioned)
            m_buffers[i] = giveOutput(m_ports[i], frames);
    }
    const AudioTimeStamp when{position->clock.position, position->clock.nsec, position->clock.rate.denom};
    const bool ran = m_gate.pass([&] { m_process(Cycle(m_buffers, when, frames)); });
    if (ran)
        return;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        if (m_spec.ports[i].direction == PortDirection::output && m_buffers[i] != nullptr)
            std::memset(m_buffers[i], 0, frames * sizeof(float));
    }
}

} // namespace tolvenary
