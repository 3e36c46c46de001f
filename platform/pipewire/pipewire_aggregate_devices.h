#pragma once

#include "platform/aggregate_devices.h"
#include "platform/pipewire/pipewire_process_taps.h"
#include "platform/pipewire/tap_device.h"

#include <memory>

namespace tolvenary
{

class PipeWireAggregateDevices final : public AggregateDevices
{
  public:
    PipeWireAggregateDevices(GraphSession &session, const PipeWireProcessTaps &taps) : m_session(session), m_taps(taps)
    {
    }

    OSStatus AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID device) override;

    /// Null where there is none of that id.
    TapDevice *device(AudioObjectID id) const;

  private:
    GraphSession &m_session;
    const PipeWireProcessTaps &m_taps;
    std::map<AudioObjectID, std::unique_ptr<TapDevice>> m_devices;
};

} // namespace tolvenary
