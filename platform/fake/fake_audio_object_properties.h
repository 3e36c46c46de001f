#pragma once

#include "platform/audio_object_properties.h"
#include "platform/fake/fake_calls.h"
#include "platform/fake/fake_objects.h"

namespace tolvenary
{

/// Reads the fake objects. Each property is found in its own scope and, for those of the whole system, at the system
/// object alone. Calls are noted with their selector: "AudioObjectGetPropertyData lnam".
class FakeAudioObjectProperties final : public AudioObjectProperties
{
  public:
    FakeAudioObjectProperties(FakeCalls &calls, const FakeObjects &objects) : m_calls(calls), m_objects(objects) {}

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                            std::uint32_t &outDataSize) override;
    OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                        std::span<const std::byte> qualifier, std::uint32_t &ioDataSize,
                                        void *outData) override;

    struct Read {
        AudioObjectID object = kAudioObjectUnknown;
        AudioObjectPropertyAddress address;
        std::uint32_t dataSize = 0;
    };
    /// Every AudioObjectGetPropertyData, in order.
    const std::vector<Read> &reads() const { return m_reads; }

  private:
    /// The value's bytes, or empty where there is none.
    std::optional<std::vector<std::byte>> value(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                                std::span<const std::byte> qualifier) const;
    std::optional<std::string> text(AudioObjectID object, std::uint32_t selector) const;
    std::vector<std::byte> deviceList() const;
    AudioObjectID processObject(std::span<const std::byte> qualifier) const;

    FakeCalls &m_calls;
    const FakeObjects &m_objects;
    std::vector<Read> m_reads;
};

} // namespace tolvenary
