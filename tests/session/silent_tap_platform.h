#pragma once

#include "platform/io_procs.h"
#include "platform/platform.h"

namespace tolvenary::session
{

/// Another platform, on which a tap starts and never delivers: what applications are heard then, a stream has captured.
class SilentTapPlatform final : public Platform, private IOProcs
{
  public:
    explicit SilentTapPlatform(Platform &real) : m_real(real) {}

    AudioServer &audioServer() override { return m_real.audioServer(); }
    AudioObjectProperties &audioObjectProperties() override { return m_real.audioObjectProperties(); }
    ProcessTaps &processTaps() override { return m_real.processTaps(); }
    AggregateDevices &aggregateDevices() override { return m_real.aggregateDevices(); }
    IOProcs &ioProcs() override { return *this; }
    AudioUnits &audioUnits() override { return m_real.audioUnits(); }
    AVCaptureDevice &captureDevice() override { return m_real.captureDevice(); }
    ScreenCaptureAccess &screenCaptureAccess() override { return m_real.screenCaptureAccess(); }
    SCShareableContent &shareableContent() override { return m_real.shareableContent(); }
    SCStreams &captureStreams() override { return m_real.captureStreams(); }
    ProcessInfo &processInfo() override { return m_real.processInfo(); }
    Timers &timers() override { return m_real.timers(); }
    NSWorkspace &workspace() override { return m_real.workspace(); }
    NSWindowOcclusion &windowOcclusion() override { return m_real.windowOcclusion(); }

  private:
    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                AudioDeviceIOBlock block) override
    {
        return m_real.ioProcs().AudioDeviceCreateIOProcIDWithBlock(outIOProcID, device, std::move(block));
    }
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) override
    {
        return m_real.ioProcs().AudioDeviceDestroyIOProcID(device, proc);
    }
    OSStatus AudioDeviceStart(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }
    OSStatus AudioDeviceStop(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }

    Platform &m_real;
};

} // namespace tolvenary::session
