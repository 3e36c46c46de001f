#pragma once

#include "platform/io_procs.h"
#include "platform/pipewire/pipewire_aggregate_devices.h"

namespace tolvenary
{

class PipeWireIOProcs final : public IOProcs
{
  public:
    explicit PipeWireIOProcs(const PipeWireAggregateDevices &devices) : m_devices(devices) {}

    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                AudioDeviceIOBlock block) override;
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc) override;

  private:
    const PipeWireAggregateDevices &m_devices;
    std::uint64_t m_next = 1;
};

} // namespace tolvenary
