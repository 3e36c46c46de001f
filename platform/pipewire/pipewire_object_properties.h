#pragma once

#include "platform/audio_object_properties.h"
#include "platform/pipewire/pipewire_aggregate_devices.h"

namespace tolvenary
{

class PipeWireObjectProperties final : public AudioObjectProperties
{
  public:
    PipeWireObjectProperties(GraphSession &session, const PipeWireProcessTaps &taps,
                             const PipeWireAggregateDevices &aggregates)
        : m_session(session), m_taps(taps), m_aggregates(aggregates)
    {
    }

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                            std::uint32_t &outDataSize) override;
    OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress &address,
                                        std::span<const std::byte> qualifier, std::uint32_t &ioDataSize,
                                        void *outData) override;

  private:
    /// The value as bytes; a string as its text, which is then written through the caller's reference.
    struct Value {
        OSStatus status = noErr;
        std::vector<std::byte> bytes;
        std::optional<std::string> text;
    };
    Value read(AudioObjectID object, const AudioObjectPropertyAddress &address, std::span<const std::byte> qualifier);
    Value readSystem(std::uint32_t selector, std::span<const std::byte> qualifier);
    Value readDevice(const GraphNode &device, const AudioObjectPropertyAddress &address);
    AudioObjectID processObject(std::int32_t processId);

    GraphSession &m_session;
    const PipeWireProcessTaps &m_taps;
    const PipeWireAggregateDevices &m_aggregates;
};

} // namespace tolvenary
