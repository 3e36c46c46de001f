#pragma once

#include "platform/io_procs.h"
#include "tests/session/forwarding_platform.h"

namespace tolvenary::session
{

/// Another platform, on which a tap starts and never delivers: what applications are heard then, a stream has captured.
class SilentTapPlatform final : public ForwardingPlatform, private IOProcs
{
  public:
    using ForwardingPlatform::ForwardingPlatform;

    IOProcs &ioProcs() override { return *this; }

  private:
    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                AudioDeviceIOBlock block) override
    {
        return real().ioProcs().AudioDeviceCreateIOProcIDWithBlock(outIOProcID, device, std::move(block));
    }
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) override
    {
        return real().ioProcs().AudioDeviceDestroyIOProcID(device, proc);
    }
    OSStatus AudioDeviceStart(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }
    OSStatus AudioDeviceStop(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }
};

} // namespace tolvenary::session
