#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <functional>
#include <memory>

namespace tolvenary
{

/// Global scope, element 0: 32-bit AudioObjectID of the device that the unit plays into.
inline constexpr std::uint32_t kAudioOutputUnitProperty_CurrentDevice = 2000;
inline constexpr std::uint32_t kAudioUnitScope_Global = 0;

/// The unit that plays into a device. Thread: main, but for the render callback.
class AudioOutputUnit
{
  public:
    virtual ~AudioOutputUnit() = default;

    /// Setting the current device binds the unit to it; a device that cannot be played into is refused.
    virtual OSStatus AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                          const void *data, std::uint32_t size) = 0;
    /// Reading the current device gives the one really bound, 0 where there is none.
    virtual OSStatus AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                          void *outData, std::uint32_t &ioSize) = 0;

    /// Frames a second of the blocks asked for. Valid from a successful AudioUnitSetProperty on.
    virtual double sampleRate() = 0;

    /// real-time: fill both channels of the block; all of it, silence included.
    using RenderCallback = std::function<void(PlanarBlock output)>;

    /// Begins to ask `render` for one stereo block each cycle.
    virtual OSStatus AudioOutputUnitStart(RenderCallback render) = 0;
    /// When this has returned, the callback is not running and will not be called again. The device stays bound until
    /// another is set or the unit is destroyed; destruction stops first.
    virtual OSStatus AudioOutputUnitStop() = 0;
};

/// What an input delivers; both are 0 while there is no input.
struct InputUnitFormat {
    double sampleRate = 0;
    std::uint32_t channelCount = 0;
};

/// The unit that records the default input and follows it when the user changes it. Thread: main, but for the callback.
class AudioInputUnit
{
  public:
    virtual ~AudioInputUnit() = default;

    virtual InputUnitFormat inputFormat() = 0;

    /// real-time: one block of the cycle, in the format that inputFormat() gave before the start. A cycle without
    /// sound from the input makes no call.
    using CaptureCallback = std::function<void(const AudioTimeStamp &when, ConstPlanarBlock input)>;

    virtual OSStatus AudioOutputUnitStart(CaptureCallback capture) = 0;
    /// When this has returned, the callback is not running and will not be called again. Destruction stops first.
    virtual OSStatus AudioOutputUnitStop() = 0;
};

/// Makes the units; an empty pointer where the system has none.
class AudioUnits
{
  public:
    virtual ~AudioUnits() = default;

    virtual std::unique_ptr<AudioOutputUnit> makeOutputUnit() = 0;
    virtual std::unique_ptr<AudioInputUnit> makeInputUnit() = 0;
};

} // namespace tolvenary
