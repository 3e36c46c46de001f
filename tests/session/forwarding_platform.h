#pragma once

#include "platform/platform.h"

namespace tolvenary::session
{

/// Another platform as it is: for tests to put something of their own in the place of a part.
class ForwardingPlatform : public Platform
{
  public:
    explicit ForwardingPlatform(Platform &real) : m_real(real) {}

    AudioServer &audioServer() override { return m_real.audioServer(); }
    AudioObjectProperties &audioObjectProperties() override { return m_real.audioObjectProperties(); }
    ProcessTaps &processTaps() override { return m_real.processTaps(); }
    AggregateDevices &aggregateDevices() override { return m_real.aggregateDevices(); }
    IOProcs &ioProcs() override { return m_real.ioProcs(); }
    AudioUnits &audioUnits() override { return m_real.audioUnits(); }
    AVCaptureDevice &captureDevice() override { return m_real.captureDevice(); }
    ScreenCaptureAccess &screenCaptureAccess() override { return m_real.screenCaptureAccess(); }
    SCShareableContent &shareableContent() override { return m_real.shareableContent(); }
    SCStreams &captureStreams() override { return m_real.captureStreams(); }
    ProcessInfo &processInfo() override { return m_real.processInfo(); }
    Timers &timers() override { return m_real.timers(); }
    NSWorkspace &workspace() override { return m_real.workspace(); }
    NSWindowOcclusion &windowOcclusion() override { return m_real.windowOcclusion(); }

  protected:
    Platform &real() { return m_real; }

  private:
    Platform &m_real;
};

} // namespace tolvenary::session
