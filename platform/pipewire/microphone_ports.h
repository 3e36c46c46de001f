#pragma once

#include "platform/pipewire/filter_node.h"

#include <atomic>
#include <span>
#include <vector>

namespace tolvenary
{

/// The input ports of our microphone node, which it has twice so that one microphone can take over from another: which
/// of the two sets shall be heard, and what is heard.
class MicrophonePorts
{
  public:
    explicit MicrophonePorts(std::size_t channels);

    std::vector<PortSpec> specs() const;

    /// The set to be heard from the first cycle in which sound comes in there. Thread: control.
    void setWanted(std::size_t set) { m_wanted.store(set, std::memory_order_relaxed); }
    /// Thread: any.
    std::size_t heardSet() const { return m_heard.load(std::memory_order_relaxed); }

    /// real-time. One pointer a channel, valid until the next call; empty when no sound came in. In the cycle of a
    /// change the one set fades into the other.
    std::span<const float *const> hear(const Cycle &cycle);

  private:
    bool hasSound(const Cycle &cycle, std::size_t set) const;
    void take(const Cycle &cycle, std::size_t set);
    void fade(const Cycle &cycle, std::size_t from, std::size_t to);

    std::atomic<std::size_t> m_wanted = 0;
    std::atomic<std::size_t> m_heard = 0;
    std::vector<float> m_silence;
    std::vector<std::vector<float>> m_faded;
    std::vector<const float *> m_channels;
};

} // namespace tolvenary
