#pragma once

namespace tolvenary
{

class AVCaptureDevice;
class AggregateDevices;
class AudioObjectProperties;
class AudioServer;
class AudioUnits;
class IOProcs;
class NSWindowOcclusion;
class NSWorkspace;
class ProcessInfo;
class ProcessTaps;
class SCShareableContent;
class SCStreams;
class ScreenCaptureAccess;
class Timers;

/// Everything that the program asks of its system, one capability each. The platform outlives all who use it.
class Platform
{
  public:
    virtual ~Platform() = default;

    virtual AudioServer &audioServer() = 0;
    virtual AudioObjectProperties &audioObjectProperties() = 0;
    virtual ProcessTaps &processTaps() = 0;
    virtual AggregateDevices &aggregateDevices() = 0;
    virtual IOProcs &ioProcs() = 0;
    virtual AudioUnits &audioUnits() = 0;
    virtual AVCaptureDevice &captureDevice() = 0;
    virtual ScreenCaptureAccess &screenCaptureAccess() = 0;
    virtual SCShareableContent &shareableContent() = 0;
    virtual SCStreams &captureStreams() = 0;
    virtual ProcessInfo &processInfo() = 0;
    virtual Timers &timers() = 0;
    virtual NSWorkspace &workspace() = 0;
    virtual NSWindowOcclusion &windowOcclusion() = 0;
};

} // namespace tolvenary
