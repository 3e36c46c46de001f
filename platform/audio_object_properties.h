#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <string>

namespace tolvenary
{

/// Which property of an object is meant.
struct AudioObjectPropertyAddress {
    std::uint32_t mSelector = 0;
    std::uint32_t mScope = 0;
    std::uint32_t mElement = 0;

    friend bool operator==(const AudioObjectPropertyAddress &, const AudioObjectPropertyAddress &) = default;
};

inline constexpr std::uint32_t kAudioObjectPropertyElementMain = 0;
inline constexpr std::uint32_t kAudioObjectPropertyScopeGlobal = fourCharCode("glob");
inline constexpr std::uint32_t kAudioObjectPropertyScopeInput = fourCharCode("inpt");
inline constexpr std::uint32_t kAudioDevicePropertyScopeOutput = fourCharCode("outp");

/// System object, global: array of AudioObjectID, every device in the system's order.
inline constexpr std::uint32_t kAudioHardwarePropertyDevices = fourCharCode("dev#");
/// System object, global; qualifier a 32-bit pid: the process's AudioObjectID, 0 where it has none.
inline constexpr std::uint32_t kAudioHardwarePropertyTranslatePIDToProcessObject = fourCharCode("id2p");
/// Device, global: StringReference, the name to show.
inline constexpr std::uint32_t kAudioObjectPropertyName = fourCharCode("lnam");
/// Device, global: StringReference, the name that outlives a restart.
inline constexpr std::uint32_t kAudioDevicePropertyDeviceUID = fourCharCode("uid ");
/// Device, output scope: an audio_buffer_list.h of channel counts, without samples.
inline constexpr std::uint32_t kAudioDevicePropertyStreamConfiguration = fourCharCode("slay");
/// Aggregate device, input scope: AudioStreamBasicDescription of what an IO proc is handed.
inline constexpr std::uint32_t kAudioDevicePropertyStreamFormat = fourCharCode("sfmt");
/// Process tap, global: StringReference.
inline constexpr std::uint32_t kAudioTapPropertyUID = fourCharCode("tuid");

/// A string property's value is one reference, 8 bytes: the caller lends the string that is written.
using StringReference = std::string *;
static_assert(sizeof(StringReference) == 8);

/// Reads the sound system's objects.
/// Thread: any but a real-time one. Never waits for a sound server that does not answer.
class AudioObjectProperties
{
  public:
    virtual ~AudioObjectProperties() = default;

    /// Stores the size in bytes of the property's value in `outDataSize`; on failure it is left alone.
    virtual OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                                    std::uint32_t &outDataSize) = 0;

    /// Fills `outData` (ioDataSize bytes of room) and stores the bytes written in `ioDataSize`; on failure both are
    /// left alone. `qualifier` is empty, except for the translations.
    virtual OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                                std::span<const std::byte> qualifier, std::uint32_t &ioDataSize,
                                                void *outData) = 0;
};

} // namespace tolvenary
