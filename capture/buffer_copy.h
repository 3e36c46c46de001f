#pragma once

#include "platform/audio_types.h"

namespace tolvenary
{

/// Copies the buffers that both lists have, each as far as both reach; what is beyond is left alone. real-time
void copyCommonBuffers(ConstAudioBufferList source, AudioBufferList destination);

} // namespace tolvenary
