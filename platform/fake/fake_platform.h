#pragma once

#include "platform/fake/fake_aggregate_devices.h"
#include "platform/fake/fake_audio_object_properties.h"
#include "platform/fake/fake_audio_server.h"
#include "platform/fake/fake_audio_units.h"
#include "platform/fake/fake_capture_device.h"
#include "platform/fake/fake_capture_streams.h"
#include "platform/fake/fake_io_procs.h"
#include "platform/fake/fake_process_info.h"
#include "platform/fake/fake_process_taps.h"
#include "platform/fake/fake_screen_capture_access.h"
#include "platform/fake/fake_shareable_content.h"
#include "platform/fake/fake_timers.h"
#include "platform/fake/fake_window_occlusion.h"
#include "platform/fake/fake_workspace.h"
#include "platform/platform.h"

namespace tolvenary
{

/// A complete made-up system: any call of it can be made to fail, any device can be in it, its audio cycles run when
/// they are told to, and time passes when it is told to. At first it has all permissions, a stereo microphone at 48
/// kHz, no device and no application.
class FakePlatform final : public Platform
{
  public:
    FakeAudioServer &audioServer() override { return m_audioServer; }
    FakeAudioObjectProperties &audioObjectProperties() override { return m_properties; }
    FakeProcessTaps &processTaps() override { return m_processTaps; }
    FakeAggregateDevices &aggregateDevices() override { return m_aggregateDevices; }
    FakeIOProcs &ioProcs() override { return m_ioProcs; }
    FakeAudioUnits &audioUnits() override { return m_audioUnits; }
    FakeCaptureDevice &captureDevice() override { return m_captureDevice; }
    FakeScreenCaptureAccess &screenCaptureAccess() override { return m_screenCaptureAccess; }
    FakeShareableContent &shareableContent() override { return m_shareableContent; }
    FakeCaptureStreams &captureStreams() override { return m_captureStreams; }
    FakeProcessInfo &processInfo() override { return m_processInfo; }
    FakeTimers &timers() override { return m_timers; }
    FakeWorkspace &workspace() override { return m_workspace; }
    FakeWindowOcclusion &windowOcclusion() override { return m_windowOcclusion; }

    FakeCalls &calls() { return m_calls; }
    FakeObjects &objects() { return m_objects; }

    /// Whether anything that was made, or started, is still there.
    bool holdsAnything() const;

  private:
    FakeCalls m_calls;
    FakeObjects m_objects;
    FakeAudioServer m_audioServer{m_calls};
    FakeAudioObjectProperties m_properties{m_calls, m_objects};
    FakeProcessTaps m_processTaps{m_calls, m_objects};
    FakeAggregateDevices m_aggregateDevices{m_calls, m_objects};
    FakeIOProcs m_ioProcs{m_calls};
    FakeAudioUnits m_audioUnits{m_calls, m_objects};
    FakeCaptureDevice m_captureDevice{m_calls};
    FakeScreenCaptureAccess m_screenCaptureAccess{m_calls};
    FakeShareableContent m_shareableContent{m_calls};
    FakeCaptureStreams m_captureStreams{m_calls};
    FakeProcessInfo m_processInfo;
    FakeTimers m_timers{m_calls};
    FakeWorkspace m_workspace;
    FakeWindowOcclusion m_windowOcclusion;
};

} // namespace tolvenary
