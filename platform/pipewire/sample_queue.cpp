#include "platform/pipewire/sample_queue.h"

#include <algorithm>
#include <utility>

namespace tolvenary
{

SampleQueue::SampleQueue()
    : m_pool(std::make_shared<AVAudioPCMBufferPool>(blocks, std::size_t{blockFrames} * maxChannels * sizeof(float))),
      m_ring(blocks)
{
}

void SampleQueue::push(ConstPlanarBlock sound, double rate)
{
    const auto format = AVAudioFormat::standardFormat(rate, static_cast<std::uint32_t>(sound.channels.size()));
    if (!format)
        return;
    for (std::uint32_t start = 0; start < sound.frames; start += blockFrames) {
        // The whole slot, however much goes into it, so that each channel is aligned.
        AVAudioPCMBufferPtr block = m_pool->make(*format, blockFrames);
        if (block == nullptr)
            return;
        const std::uint32_t frames = std::min(blockFrames, sound.frames - start);
        block->setFrameLength(frames);
        for (std::uint32_t c = 0; c < sound.channels.size(); ++c)
            std::copy_n(sound.channels[c] + start, frames, block->floatChannel(c));
        m_ring.writer().push(std::move(block));
    }
}

std::shared_ptr<const SampleBlock> SampleQueue::pop()
{
    return std::make_shared<const SampleBlock>(SampleBlock{m_pool, m_ring.reader().pop()});
}

void SampleQueue::clear()
{
    while (size() > 0)
        m_ring.reader().pop();
}

} // namespace tolvenary
