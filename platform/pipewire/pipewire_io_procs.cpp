#include "platform/pipewire/pipewire_io_procs.h"

#include <cerrno>

namespace tolvenary
{

OSStatus PipeWireIOProcs::AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                             AudioDeviceIOBlock block)
{
    TapDevice *found = m_devices.device(device);
    if (found == nullptr || !block)
        return -EINVAL;
    const AudioDeviceIOProcID proc{m_next++};
    const OSStatus status = found->addProc(proc, std::move(block));
    if (status == noErr)
        outIOProcID = proc;
    return status;
}

OSStatus PipeWireIOProcs::AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc)
{
    TapDevice *found = m_devices.device(device);
    return found == nullptr ? -EINVAL : found->removeProc(proc);
}

OSStatus PipeWireIOProcs::AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc)
{
    TapDevice *found = m_devices.device(device);
    return found == nullptr ? -EINVAL : found->start(proc);
}

OSStatus PipeWireIOProcs::AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc)
{
    TapDevice *found = m_devices.device(device);
    return found == nullptr ? -EINVAL : found->stop(proc);
}

} // namespace tolvenary
