#include "core/mix_feed.h"

namespace tolvenary
{

void MixFeed::feedMic(AVAudioPCMBufferPtr buffer)
{
    m_counters->withLock([frames = buffer->frameLength()](FrameCounts &counts) { counts.mic += frames; });
    m_micPlayer.scheduleBuffer(std::move(buffer), {});
}

void MixFeed::feedApp(AVAudioPCMBufferPtr buffer)
{
    m_counters->withLock([frames = buffer->frameLength()](FrameCounts &counts) { counts.app += frames; });
    m_appPlayer.scheduleBuffer(std::move(buffer), {});
}

} // namespace tolvenary
