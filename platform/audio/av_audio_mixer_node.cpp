#include "platform/audio/av_audio_mixer_node.h"

#include "platform/audio/mix_loops.h"
#include "platform/audio/planar.h"

#include <algorithm>

namespace tolvenary
{

void AVAudioMixerNode::setOutputVolume(float volume)
{
    m_outputVolume.store(volume, std::memory_order_relaxed);
}

float AVAudioMixerNode::outputVolume() const
{
    return m_outputVolume.load(std::memory_order_relaxed);
}

void AVAudioMixerNode::prepare(std::uint32_t maxFrames, bool)
{
    for (auto &channel : m_scratch)
        channel.assign(maxFrames, 0.0F);
    m_reachedVolume.reset();
}

void AVAudioMixerNode::setInput(std::uint32_t bus, AVAudioNode *source)
{
    if (bus >= m_inputs.size())
        m_inputs.resize(bus + 1, nullptr);
    m_inputs[bus] = source;
}

void AVAudioMixerNode::detached()
{
    m_inputs.clear();
}

void AVAudioMixerNode::render(PlanarBlock output)
{
    const float volume = outputVolume();
    const float from = m_reachedVolume.value_or(volume);
    if (output.frames > 0)
        m_reachedVolume = volume;

    const auto longest = static_cast<std::uint32_t>(m_scratch.front().size());
    if (longest == 0)
        return silence(output);
    PlanarSlice slice(output);
    for (std::uint32_t first = 0; first < output.frames; first += longest) {
        const PlanarBlock part = slice.at(first, std::min(longest, output.frames - first));
        sumInputs(part);
        scale(part, {from, volume, output.frames}, first);
    }
}

void AVAudioMixerNode::sumInputs(PlanarBlock output)
{
    bool empty = true;
    for (AVAudioNode *const input : m_inputs) {
        if (input == nullptr)
            continue;
        if (empty)
            input->render(output);
        else
            add(*input, output);
        empty = false;
    }
    if (empty)
        silence(output);
}

void AVAudioMixerNode::add(AVAudioNode &input, PlanarBlock output)
{
    const std::size_t channels = std::min(output.channels.size(), m_scratch.size());
    std::array<float *, scratchChannels> scratch{};
    for (std::size_t c = 0; c < channels; ++c)
        scratch[c] = m_scratch[c].data();
    input.render({std::span(scratch).first(channels), output.frames});
    for (std::size_t c = 0; c < channels; ++c)
        addSamples(output.channels[c], scratch[c], output.frames);
}

void AVAudioMixerNode::scale(PlanarBlock output, const GainRamp &ramp, std::uint32_t first)
{
    if (ramp.from == 0 && ramp.to == 0)
        return silence(output); // infinities and NaNs included
    if (ramp.from == 1 && ramp.to == 1)
        return;
    for (float *const channel : output.channels) {
        if (ramp.from == ramp.to)
            scaleSamples(channel, output.frames, ramp.to);
        else
            scaleAlongRamp(channel, output.frames, ramp, first);
    }
}

} // namespace tolvenary
