#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"

namespace tolvenary
{

/// Copies what the source's buffers have in common with the target's. A pooled target still holds an older block: what
/// the source does not fill is silenced, so that it is not heard again. real-time
void copyBuffers(ConstAudioBufferList source, AVAudioPCMBuffer &target);

} // namespace tolvenary
