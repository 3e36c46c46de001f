#pragma once

#include "platform/platform.h"

#include <memory>

namespace tolvenary
{

/// The platform on Linux: sound from PipeWire, everything else from the desktop. There is one for the life of the
/// program, made on the main thread after the application object.
class LinuxPlatform final : public Platform
{
  public:
    LinuxPlatform();
    ~LinuxPlatform() override;
    LinuxPlatform(const LinuxPlatform &) = delete;
    LinuxPlatform &operator=(const LinuxPlatform &) = delete;

    AudioServer &audioServer() override;
    AudioObjectProperties &audioObjectProperties() override;
    ProcessTaps &processTaps() override;
    AggregateDevices &aggregateDevices() override;
    IOProcs &ioProcs() override;
    AudioUnits &audioUnits() override;
    AVCaptureDevice &captureDevice() override;
    ScreenCaptureAccess &screenCaptureAccess() override;
    SCShareableContent &shareableContent() override;
    SCStreams &captureStreams() override;
    ProcessInfo &processInfo() override;
    Timers &timers() override;
    NSWorkspace &workspace() override;
    NSWindowOcclusion &windowOcclusion() override;

  private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace tolvenary
