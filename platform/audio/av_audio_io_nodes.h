#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_node.h"
#include "platform/audio_units.h"

#include <functional>
#include <memory>

namespace tolvenary
{

class AVAudioSinkNode;

/// The end of an engine's graph: renders what it is connected to into a device, at the device's rate.
class AVAudioOutputNode final : public AVAudioNode
{
  public:
    /// The unit that binds the node to a device; null where the system has none.
    AudioOutputUnit *audioUnit() const;

    void render(PlanarBlock output) override;
};

/// Called on the capturing thread with each block, in the format that the tap was installed with. real-time
using AVAudioNodeTapBlock = std::function<void(const AVAudioPCMBuffer &buffer, const AudioTimeStamp &when)>;

/// The beginning of an engine's graph: the default input.
class AVAudioInputNode final : public AVAudioNode
{
  public:
    /// What the input delivers on bus 0; empty while there is none.
    std::optional<AVAudioFormat> inputFormatForBus(std::uint32_t bus) const;

    /// One tap on the bus, replacing an earlier one. `bufferSize` is a wish: blocks come as the cycles do, because to
    /// gather them would be delay. Thread: main, while the engine is stopped.
    void installTapOnBus(std::uint32_t bus, std::uint32_t bufferSize, const AVAudioFormat &format,
                         AVAudioNodeTapBlock block);
    /// When this has returned, the block is not running and will not be called again. Thread: main.
    void removeTapOnBus(std::uint32_t bus);
};

} // namespace tolvenary
