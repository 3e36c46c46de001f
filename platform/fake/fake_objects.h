#pragma once

#include "platform/audio_types.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tolvenary
{

/// A device as a test wants it. What is empty cannot be read.
struct FakeDevice {
    AudioObjectID id = kAudioObjectUnknown;
    std::optional<std::string> name;
    std::optional<std::string> uid;
    /// Channels of each buffer of the output scope.
    std::optional<std::vector<std::uint32_t>> outputBuffers = std::vector<std::uint32_t>{2};
    /// The configuration's size is 0 bytes, as some drivers have it for a scope without streams.
    bool configurationHasNoSize = false;
};

/// The sound system's objects, shared by the fakes that make, change and read them.
struct FakeObjects {
    std::vector<FakeDevice> devices;
    std::map<std::int32_t, AudioObjectID> processes; ///< a process that is not here translates to 0
    std::map<AudioObjectID, std::string> taps;       ///< with their UIDs
    std::vector<AudioObjectID> aggregates;
    AudioStreamBasicDescription aggregateFormat{48000,
                                                kAudioFormatLinearPCM,
                                                kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked |
                                                    kAudioFormatFlagIsNonInterleaved,
                                                4,
                                                1,
                                                4,
                                                2,
                                                32,
                                                0};
    AudioObjectID nextID = 1000;

    AudioObjectID makeID() { return nextID++; }
    const FakeDevice *device(AudioObjectID id) const
    {
        for (const FakeDevice &candidate : devices)
            if (candidate.id == id)
                return &candidate;
        return nullptr;
    }
};

} // namespace tolvenary
