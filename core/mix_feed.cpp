#include "core/mix_feed.h"

namespace tolvenary
{

void MixFeed::deliverMicrophone(AVAudioPCMBufferPtr buffer)
{
    const std::uint32_t frames = buffer->frameLength();
    m_counters.withLock([frames](FrameCounts &counts) { counts.mic += frames; });
    m_micPlayer.scheduleBuffer(std::move(buffer), nullptr);
}

void MixFeed::deliverApplication(AVAudioPCMBufferPtr buffer)
{
    const std::uint32_t frames = buffer->frameLength();
    m_counters.withLock([frames](FrameCounts &counts) { counts.app += frames; });
    m_appPlayer.scheduleBuffer(std::move(buffer), nullptr);
}

FrameCounts MixFeed::counts()
{
    return m_counters.withLock([](const FrameCounts &counts) { return counts; });
}

void MixFeed::resetCounts()
{
    m_counters.withLock([](FrameCounts &counts) { counts = {}; });
}

} // namespace tolvenary
