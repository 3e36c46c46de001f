#pragma once

#include "platform/audio_types.h"

#include <optional>

namespace tolvenary
{

enum class AVAudioCommonFormat { other, pcmFormatFloat32, pcmFormatFloat64, pcmFormatInt16, pcmFormatInt32 };

/// What samples mean: rate, channels, sample type and layout. A value; two formats are equal when all of it is.
class AVAudioFormat
{
  public:
    /// The standard format: 32-bit float, non-interleaved. Empty when the rate is not above 0 or there is no channel.
    static std::optional<AVAudioFormat> standardFormat(double sampleRate, std::uint32_t channels);

    /// The format that `description` describes; empty when it is not linear PCM of a sample type listed above, has no
    /// channel, too many channels for the bytes of a frame to be counted, or no rate above 0.
    static std::optional<AVAudioFormat> fromStreamDescription(const AudioStreamBasicDescription &description);

    double sampleRate() const { return m_description.mSampleRate; }
    std::uint32_t channelCount() const { return m_description.mChannelsPerFrame; }
    AVAudioCommonFormat commonFormat() const;
    bool isInterleaved() const;
    const AudioStreamBasicDescription &streamDescription() const { return m_description; }

    /// AudioBuffer entries of a block: 1 if interleaved, otherwise one per channel.
    std::uint32_t bufferCount() const { return isInterleaved() ? 1 : channelCount(); }
    /// Bytes a frame takes in one of these buffers.
    std::uint32_t bytesPerFrame() const { return m_description.mBytesPerFrame; }

    friend bool operator==(const AVAudioFormat &, const AVAudioFormat &) = default;

  private:
    explicit AVAudioFormat(const AudioStreamBasicDescription &description) : m_description(description) {}

    AudioStreamBasicDescription m_description;
};

} // namespace tolvenary
