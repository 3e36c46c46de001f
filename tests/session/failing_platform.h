#pragma once

#include "platform/aggregate_devices.h"
#include "platform/audio_units.h"
#include "platform/capture_authorization.h"
#include "platform/io_procs.h"
#include "platform/process_taps.h"
#include "platform/screen_capture_access.h"
#include "tests/session/forwarding_platform.h"

#include <array>
#include <string>

namespace tolvenary::session
{

/// The calls of a start that can be made to fail, in the order of the start.
enum class FailingCall {
    microphonePermission,
    screenRecordingPermission,
    bindOutput,
    startOutput,
    startInput,
    createTap,
    createAggregate,
    createIOProc,
    startDevice,
};

/// Another platform, of which one call fails.
class FailingPlatform final : public ForwardingPlatform,
                              private AVCaptureDevice,
                              private ScreenCaptureAccess,
                              private AudioUnits,
                              private ProcessTaps,
                              private AggregateDevices,
                              private IOProcs
{
  public:
    static constexpr std::array allCalls = {
        FailingCall::microphonePermission, FailingCall::screenRecordingPermission,
        FailingCall::bindOutput,           FailingCall::startOutput,
        FailingCall::startInput,           FailingCall::createTap,
        FailingCall::createAggregate,      FailingCall::createIOProc,
        FailingCall::startDevice,
    };

    FailingPlatform(Platform &real, FailingCall call) : ForwardingPlatform(real), m_call(call) {}

    /// The stage of the start that the call belongs to, as the status names it.
    static std::string stage(FailingCall call);
    static std::string name(FailingCall call);

    ProcessTaps &processTaps() override { return *this; }
    AggregateDevices &aggregateDevices() override { return *this; }
    IOProcs &ioProcs() override { return *this; }
    AudioUnits &audioUnits() override { return *this; }
    AVCaptureDevice &captureDevice() override { return *this; }
    ScreenCaptureAccess &screenCaptureAccess() override { return *this; }

  private:
    bool fails(FailingCall call) const { return call == m_call; }

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

    FailingCall m_call;
};

} // namespace tolvenary::session
