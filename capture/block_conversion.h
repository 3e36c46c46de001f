#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"

namespace tolvenary
{

/// Frames that converting `frames` frames may give at most: by the ratio of the rates, and 32 more for what the
/// converter had kept. A count that no buffer could have ends the program. real-time
std::uint32_t convertedCapacity(double targetRate, double sourceRate, std::uint32_t frames);

/// Converts one captured block as the next piece of a stream, and hands back all that is ready, also if that is
/// nothing. Empty when no buffer is free or the conversion fails. real-time
AVAudioPCMBufferPtr convertBlock(AVAudioConverter &converter, AVAudioPCMBufferPool &pool,
                                 const AVAudioPCMBuffer &block);

} // namespace tolvenary
