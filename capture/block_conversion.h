#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"

namespace tolvenary
{

/// Hands one block to a converter: it supplies the block when it is first asked, and then has no data for now. It never
/// ends the stream, so that the converter carries its filter's history over to the next block. real-time
class OneShotInput
{
  public:
    explicit OneShotInput(const AVAudioPCMBuffer &block) : m_block(block) {}

    const AVAudioPCMBuffer *operator()(std::uint32_t inNumberOfPackets, AVAudioConverterInputStatus &outStatus);

  private:
    const AVAudioPCMBuffer &m_block;
    bool m_supplied = false;
};

/// Frames of room for `frames` frames at `sourceRate` once they are at `targetRate`, with a margin for what a resampler
/// held back before. Stops the program if that is no 32-bit count: such a format is a defect, not a condition.
/// real-time
std::uint32_t outputCapacity(double targetRate, double sourceRate, std::uint32_t frames);

/// What `converter` makes of one block, in a new buffer in `target`; its length is whatever was ready. Empty when there
/// is no converter, no free buffer, or an error. real-time
AVAudioPCMBufferPtr convertBlock(AVAudioConverter *converter, AVAudioPCMBufferPool &pool, const AVAudioPCMBuffer &block,
                                 const AVAudioFormat &target);

} // namespace tolvenary
