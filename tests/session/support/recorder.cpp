#include "tests/session/support/recorder.h"

#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/wait_until.h"

#include <algorithm>
#include <atomic>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <stdexcept>
#include <string>

namespace tolvenary::session
{

namespace
{

constexpr std::uint32_t longestCycle = 8192;

struct ThreadLoopLock {
    explicit ThreadLoopLock(pw_thread_loop *loop) : m_loop(loop) { pw_thread_loop_lock(m_loop); }
    ~ThreadLoopLock() { pw_thread_loop_unlock(m_loop); }
    ThreadLoopLock(const ThreadLoopLock &) = delete;
    ThreadLoopLock &operator=(const ThreadLoopLock &) = delete;

  private:
    pw_thread_loop *m_loop;
};

} // namespace

/// The node and what its cycles write. `state` hands `take` to and fro: the real-time thread touches it only while
/// running, everybody else only while not.
struct Recorder::Node {
    enum class State { idle, running, done };

    explicit Node(std::size_t tracks);
    ~Node();
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;

    void addPort(std::size_t track);
    void process(const spa_io_position &position); // real-time
    void makeRoom(std::size_t frames);
    std::string standstill();

    static const pw_filter_events events;

    pw_thread_loop *loop = nullptr;
    pw_filter *filter = nullptr;
    std::vector<void *> ports;
    Recording take;
    std::size_t wanted = 0;
    std::size_t taken = 0;
    std::atomic<State> state = State::idle;
    std::atomic<std::uint64_t> cyclesSeen = 0;
};

const pw_filter_events Recorder::Node::events = {
    .version = PW_VERSION_FILTER_EVENTS,
    .destroy = nullptr,
    .state_changed = nullptr,
    .io_changed = nullptr,
    .param_changed = nullptr,
    .add_buffer = nullptr,
    .remove_buffer = nullptr,
    .process = [](void *node, spa_io_position *position) { static_cast<Node *>(node)->process(*position); },
    .drained = nullptr,
    .command = nullptr,
};

Recorder::Node::Node(std::size_t tracks)
{
    pw_init(nullptr, nullptr);
    loop = pw_thread_loop_new("recorder", nullptr);
    pw_thread_loop_start(loop);
    const ThreadLoopLock lock(loop);
    filter = pw_filter_new_simple(pw_thread_loop_get_loop(loop), "recorder",
                                  pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", PW_KEY_NODE_NAME, nodeName,
                                                    PW_KEY_MEDIA_TYPE, "Audio", nullptr),
                                  &events, this);
    for (std::size_t track = 0; track < tracks; ++track)
        addPort(track);
    if (pw_filter_connect(filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error("the recorder cannot connect");
}

Recorder::Node::~Node()
{
    {
        const ThreadLoopLock lock(loop);
        pw_filter_destroy(filter);
    }
    pw_thread_loop_stop(loop);
    pw_thread_loop_destroy(loop);
    pw_deinit();
}

void Recorder::Node::addPort(std::size_t track)
{
    const std::string name = "track_" + std::to_string(track);
    ports.push_back(pw_filter_add_port(
        filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
        pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME, name.c_str(), nullptr),
        nullptr, 0));
}

void Recorder::Node::makeRoom(std::size_t frames)
{
    wanted = frames;
    taken = 0;
    take = {};
    take.tracks.assign(ports.size(), Samples(frames + longestCycle));
    take.cycles.reserve(frames / 16 + 16);
}

void Recorder::Node::process(const spa_io_position &position)
{
    const auto frames = static_cast<std::uint32_t>(position.clock.duration);
    const bool recording = state.load(std::memory_order_acquire) == State::running && frames <= longestCycle &&
                           take.cycles.size() < take.cycles.capacity();
    for (std::size_t track = 0; track < ports.size(); ++track) {
        // Taken in idle cycles too: a buffer that is not taken is the last one that the port ever gets.
        const auto *samples = static_cast<const float *>(pw_filter_get_dsp_buffer(ports[track], frames));
        if (recording && samples != nullptr)
            std::copy_n(samples, frames, take.tracks[track].begin() + static_cast<std::ptrdiff_t>(taken));
    }
    cyclesSeen.fetch_add(1, std::memory_order_relaxed);
    if (!recording)
        return;
    take.rate = static_cast<double>(position.clock.rate.denom);
    take.cycles.push_back({position.clock.position, taken, frames});
    taken += frames;
    if (taken >= wanted)
        state.store(State::done, std::memory_order_release);
}

/// Why a recording has not come to its end: whether cycles still come, and how far it went. It is given up with this.
std::string Recorder::Node::standstill()
{
    const std::uint64_t before = cyclesSeen;
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const std::uint64_t since = cyclesSeen - before;
    state.store(State::idle, std::memory_order_relaxed);
    return "the graph stopped while it was recorded: " + std::to_string(taken) + " of " + std::to_string(wanted) +
           " frames after " + std::to_string(take.cycles.size()) + " cycles, the last of " +
           std::to_string(take.cycles.empty() ? 0 : take.cycles.back().frames) + " frames; " + std::to_string(since) +
           " cycles in the last second";
}

Recorder::Recorder(PrivateSession &session, const std::vector<std::string> &ports)
    : m_session(session), m_node(std::make_unique<Node>(ports.size()))
{
    for (std::size_t track = 0; track < ports.size(); ++track)
        connect(track, ports[track]);
    if (!waitUntil([this] { return m_node->cyclesSeen > 0; }, std::chrono::seconds(5)))
        throw std::runtime_error("the graph does not run");
}

Recorder::~Recorder() = default;

void Recorder::connect(std::size_t track, const std::string &port)
{
    link(m_session, port, std::string(nodeName) + ":track_" + std::to_string(track));
}

Recording Recorder::record(std::size_t frames, const std::function<void()> &meanwhile)
{
    begin(frames);
    return finish(meanwhile);
}

void Recorder::begin(std::size_t frames)
{
    m_node->makeRoom(frames);
    m_node->state.store(Node::State::running, std::memory_order_release);
}

bool Recorder::isDone() const
{
    return m_node->state.load(std::memory_order_acquire) == Node::State::done;
}

Recording Recorder::finish(const std::function<void()> &meanwhile)
{
    const auto pause = [&] {
        if (meanwhile)
            meanwhile();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    };
    const auto patience = std::chrono::seconds(10 + m_node->wanted / 16000);
    if (!waitUntil([this] { return isDone(); }, patience, pause))
        throw std::runtime_error(m_node->standstill());
    Recording recording = std::move(m_node->take);
    for (Samples &track : recording.tracks)
        track.resize(m_node->taken);
    m_node->state.store(Node::State::idle, std::memory_order_relaxed);
    return recording;
}

} // namespace tolvenary::session
