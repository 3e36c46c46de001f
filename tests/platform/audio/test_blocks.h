#pragma once

#include "platform/audio/av_audio_pcm_buffer_pool.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace tolvenary::test
{

inline AVAudioFormat standardFormat(double rate = 48000, std::uint32_t channels = 2)
{
    return AVAudioFormat::standardFormat(rate, channels).value();
}

inline AVAudioFormat pcmFormat(double rate, std::uint32_t channels, std::uint32_t bits, std::uint32_t flags)
{
    AudioStreamBasicDescription description;
    description.mSampleRate = rate;
    description.mFormatID = kAudioFormatLinearPCM;
    description.mFormatFlags = flags;
    description.mChannelsPerFrame = channels;
    description.mBitsPerChannel = bits;
    return AVAudioFormat::fromStreamDescription(description).value();
}

/// Planar samples that a block can be borrowed from; filled with a value that no test expects.
class Samples
{
  public:
    explicit Samples(std::uint32_t frames, std::size_t channels = 2) : m_samples(channels)
    {
        for (auto &channel : m_samples) {
            channel.assign(frames, 99.0F);
            m_writable.push_back(channel.data());
            m_readable.push_back(channel.data());
        }
        m_frames = frames;
    }

    PlanarBlock block() { return {m_writable, m_frames}; }
    ConstPlanarBlock constBlock() const { return {m_readable, m_frames}; }
    std::vector<float> &operator[](std::size_t channel) { return m_samples[channel]; }

  private:
    std::vector<std::vector<float>> m_samples;
    std::vector<float *> m_writable;
    std::vector<const float *> m_readable;
    std::uint32_t m_frames = 0;
};

/// A pooled buffer of a standard format with the same samples in each channel.
inline AVAudioPCMBufferPtr makeBuffer(AVAudioPCMBufferPool &pool, const std::vector<float> &samples,
                                      const AVAudioFormat &format = standardFormat())
{
    auto buffer = pool.make(format, static_cast<std::uint32_t>(samples.size()));
    if (buffer == nullptr)
        return nullptr;
    buffer->setFrameLength(buffer->frameCapacity());
    for (std::uint32_t c = 0; c < format.channelCount(); ++c)
        std::copy(samples.begin(), samples.end(), buffer->floatChannel(c));
    return buffer;
}

} // namespace tolvenary::test
