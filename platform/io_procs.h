#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <functional>

namespace tolvenary
{

/// The registration of a block on a device; 0 means none.
enum class AudioDeviceIOProcID : std::uint64_t {};

/// Called once a cycle on the device's real-time thread with (now, input, input time, output, output time). The lists
/// are borrowed for the call. real-time: must not allocate, lock, log or make system calls.
using AudioDeviceIOBlock =
    std::function<void(const AudioTimeStamp &inNow, ConstAudioBufferList inInputData, const AudioTimeStamp &inInputTime,
                       AudioBufferList outOutputData, const AudioTimeStamp &inOutputTime)>;

/// Runs blocks in the cycles of a device. Thread: main.
class IOProcs
{
  public:
    virtual ~IOProcs() = default;

    /// Registers `block`; it is not called before AudioDeviceStart. Without a queue, as here, it runs on the real-time
    /// thread itself.
    virtual OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                        AudioDeviceIOBlock block) = 0;
    virtual OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) = 0;
    virtual OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc) = 0;
    /// When this has returned, the block is not running and will not be called again until the next start.
    virtual OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc) = 0;
};

} // namespace tolvenary
