#pragma once

#include "platform/audio/av_audio_node.h"

#include <atomic>
#include <vector>

namespace tolvenary
{

/// Adds up its inputs and scales the sum. A new volume is reached over the next block, in a straight line, so that a
/// moving slider makes no click.
class AVAudioMixerNode final : public AVAudioNode
{
  public:
    /// Linear factor, 1 unchanged; not clamped. Thread: any.
    void setOutputVolume(float volume);
    float outputVolume() const;

    void render(PlanarBlock output) override;
};

} // namespace tolvenary
