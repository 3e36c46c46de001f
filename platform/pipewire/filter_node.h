#pragma once

#include "platform/audio_types.h"
#include "platform/pipewire/callback_gate.h"
#include "platform/pipewire/graph.h"
#include "platform/pipewire/pw_handles.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct spa_io_position;

namespace tolvenary
{

struct PortSpec {
    PortDirection direction = PortDirection::input;
    std::string name;
    bool isPositioned = true; ///< its name is its channel
};

struct NodeSpec {
    std::string name;
    std::string description;
    std::string group; ///< nodes of one group share a driver and its cycles
    std::string category;
    std::vector<PortSpec> ports;
    bool isActive = true; ///< runs as soon as it exists; otherwise from setActive(true) on
};

/// The samples of one cycle, for the length of a call. real-time
class Cycle
{
  public:
    /// One pointer for each port of NodeSpec::ports.
    Cycle(std::span<void *const> ports, AudioTimeStamp when, std::uint32_t frames)
        : m_ports(ports), m_when(when), m_frames(frames)
    {
    }

    const AudioTimeStamp &when() const { return m_when; }
    std::uint32_t frames() const { return m_frames; }

    /// What came in at the port (in the order of NodeSpec::ports); null when no sound did: nothing is linked, or
    /// nothing that is linked is running.
    const float *input(std::size_t port) const;
    /// Where to write what goes out of the port; null when nobody listens, or has no room for a cycle.
    float *output(std::size_t port) const;

  private:
    std::span<void *const> m_ports;
    AudioTimeStamp m_when;
    std::uint32_t m_frames;
};

/// One node of ours in the server's graph. It exists while it is realized on a connection, and can be realized again on
/// the next one. Under the control lock, except for what is marked.
class FilterNode
{
  public:
    /// Longest cycle that the server allows (its quantum limit).
    static constexpr std::uint32_t maxFrames = 8192;

    using Clock = std::chrono::steady_clock;

    /// real-time: called once a cycle while the gate is open.
    using Process = std::function<void(const Cycle &)>;

    /// `changed` is called on the control thread when the node's state changes.
    FilterNode(NodeSpec spec, Process process, std::function<void()> changed);
    ~FilterNode();
    FilterNode(const FilterNode &) = delete;
    FilterNode &operator=(const FilterNode &) = delete;

    void realize(pw_core *core);
    void release();

    /// The server's id of it, once it has one.
    std::optional<GlobalId> nodeId() const;
    bool hasFailed() const { return m_hasFailed; }
    /// How long it lived, if somebody else had the server end it.
    std::optional<Clock::duration> endedAfter() const { return m_endedAfter; }
    void setActive(bool active);
    bool isActive() const { return m_isActive; }

    /// Thread: control side, no lock needed.
    CallbackGate &gate() { return m_gate; }

    /// The graph's rate as the last cycle had it, 0 before the first. Thread: any.
    std::uint32_t observedRate() const { return m_rate.load(std::memory_order_relaxed); }

    /// Cycles run since the node was made. Thread: any.
    std::uint64_t cycles() const { return m_cycles.load(std::memory_order_relaxed); }

    const NodeSpec &spec() const { return m_spec; }

  private:
    struct Events;

    bool addPorts();
    void stateChanged(int state);
    void processCycle(const spa_io_position *position); // real-time

    NodeSpec m_spec;
    Process m_process;
    std::function<void()> m_changed;
    CallbackGate m_gate;
    std::atomic<std::uint32_t> m_rate = 0;
    std::atomic<std::uint64_t> m_cycles = 0;
    std::vector<void *> m_ports;
    std::vector<void *> m_buffers;
    bool m_isActive;
    bool m_hasFailed = false;
    Clock::time_point m_madeAt;
    std::optional<Clock::duration> m_endedAfter;
    PwHandle<pw_filter> m_filter;
    PwHandle<spa_hook> m_hook; // declared last: taken out before the filter goes
};

} // namespace tolvenary
