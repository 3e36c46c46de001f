#pragma once

#include "platform/aggregate_devices.h"
#include "platform/audio_units.h"
#include "platform/capture_authorization.h"
#include "platform/io_procs.h"
#include "platform/process_taps.h"
#include "platform/screen_capture_access.h"
#include "tests/session/forwarding_platform.h"

#include <functional>
#include <string>

namespace tolvenary::session
{

/// Another platform, which asks before it takes a step of a start or a stop, and can be told to fail instead.
class SteppedPlatform final : public ForwardingPlatform,
                              private AVCaptureDevice,
                              private ScreenCaptureAccess,
                              private AudioUnits,
                              private ProcessTaps,
                              private AggregateDevices,
                              private IOProcs
{
  public:
    /// Is told the name of the step. What it returns, unless it is noErr, is returned in place of taking the step; a
    /// permission is denied then.
    using Step = std::function<OSStatus(const std::string &name)>;

    SteppedPlatform(Platform &real, Step step) : ForwardingPlatform(real), m_step(std::move(step)) {}

    ProcessTaps &processTaps() override { return *this; }
    AggregateDevices &aggregateDevices() override { return *this; }
    IOProcs &ioProcs() override { return *this; }
    AudioUnits &audioUnits() override { return *this; }
    AVCaptureDevice &captureDevice() override { return *this; }
    ScreenCaptureAccess &screenCaptureAccess() override { return *this; }

  private:
    void authorizationStatusForMediaType(AVMediaType mediaType,
                                         std::function<void(AVAuthorizationStatus)> completionHandler) override;
    void requestAccessForMediaType(AVMediaType mediaType, std::function<void(bool granted)> completionHandler) override;
    bool CGPreflightScreenCaptureAccess() override;
    bool CGRequestScreenCaptureAccess() override;
    std::unique_ptr<AudioOutputUnit> makeOutputUnit() override;
    std::unique_ptr<AudioInputUnit> makeInputUnit() override;
    OSStatus AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap) override;
    OSStatus AudioHardwareDestroyProcessTap(AudioObjectID tap) override;
    OSStatus AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID device) override;
    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                AudioDeviceIOBlock block) override;
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc) override;

    Step m_step;
};

} // namespace tolvenary::session
