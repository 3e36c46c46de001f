#include "platform/pipewire/microphone_ports.h"

#include "platform/pipewire/port_names.h"

#include <utility>

namespace tolvenary
{

MicrophonePorts::MicrophonePorts(std::size_t channels)
    : m_silence(FilterNode::maxFrames, 0),
      m_faded(channels, std::vector<float>(FilterNode::maxFrames, 0)),
      m_channels(channels, nullptr)
{
}

std::vector<PortSpec> MicrophonePorts::specs() const
{
    std::vector<PortSpec> specs;
    for (const char *prefix : port_names::microphoneSets) {
        for (std::size_t i = 1; i <= m_channels.size(); ++i)
            specs.push_back({PortDirection::input, prefix + std::to_string(i), false});
    }
    return specs;
}

bool MicrophonePorts::hasSound(const Cycle &cycle, std::size_t set) const
{
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        if (cycle.input(set * m_channels.size() + i) != nullptr)
            return true;
    }
    return false;
}

std::span<const float *const> MicrophonePorts::hear(const Cycle &cycle)
{
    const std::size_t heard = heardSet();
    const std::size_t wanted = m_wanted.load(std::memory_order_relaxed);
    const bool isHeard = hasSound(cycle, heard);
    if (wanted != heard && hasSound(cycle, wanted)) {
        take(cycle, wanted);
        if (isHeard)
            fade(cycle, heard, wanted);
        m_heard.store(wanted, std::memory_order_relaxed);
        return m_channels;
    }
    if (!isHeard)
        return {};
    take(cycle, heard);
    return m_channels;
}

void MicrophonePorts::take(const Cycle &cycle, std::size_t set)
{
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        const float *samples = cycle.input(set * m_channels.size() + i);
        m_channels[i] = samples != nullptr ? samples : m_silence.data();
    }
}

void MicrophonePorts::fade(const Cycle &cycle, std::size_t from, std::size_t to)
{
    const auto samplesOf = [&](std::size_t set, std::size_t channel) {
        const float *samples = cycle.input(set * m_channels.size() + channel);
        return samples != nullptr ? samples : m_silence.data();
    };
    const float step = 1.0F / static_cast<float>(cycle.frames());
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        const float *before = samplesOf(from, i);
        const float *after = samplesOf(to, i);
        for (std::uint32_t frame = 0; frame < cycle.frames(); ++frame) {
            const float share = static_cast<float>(frame) * step;
            m_faded[i][frame] = before[frame] + share * (after[frame] - before[frame]);
        }
        m_channels[i] = m_faded[i].data();
    }
}

} // namespace tolvenary
