#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"

#include <cstdint>
#include <vector>

namespace tolvenary::test
{

/// The samples of one channel.
inline std::vector<float> channelOf(const AVAudioPCMBuffer &buffer, std::uint32_t channel)
{
    return {buffer.floatChannel(channel), buffer.floatChannel(channel) + buffer.frameLength()};
}

} // namespace tolvenary::test
