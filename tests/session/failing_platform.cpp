#include "tests/session/failing_platform.h"

#include <cerrno>

namespace tolvenary::session
{

namespace
{

/// Binds and reads back as the real one; can be told not to bind, or not to start.
class FailingOutputUnit final : public AudioOutputUnit
{
  public:
    FailingOutputUnit(std::unique_ptr<AudioOutputUnit> real, bool failsToBind, bool failsToStart)
        : m_real(std::move(real)), m_failsToBind(failsToBind), m_failsToStart(failsToStart)
    {
    }

    OSStatus AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, const void *data,
                                  std::uint32_t size) override
    {
        const OSStatus status = m_real->AudioUnitSetProperty(property, scope, element, data, size);
        return m_failsToBind ? -EBUSY : status;
    }
    OSStatus AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, void *outData,
                                  std::uint32_t &ioSize) override
    {
        return m_real->AudioUnitGetProperty(property, scope, element, outData, ioSize);
    }
    double sampleRate() override { return m_real->sampleRate(); }
    OSStatus AudioOutputUnitStart(RenderCallback render) override
    {
        return m_failsToStart ? -EIO : m_real->AudioOutputUnitStart(std::move(render));
    }
    OSStatus AudioOutputUnitStop() override { return m_real->AudioOutputUnitStop(); }

  private:
    std::unique_ptr<AudioOutputUnit> m_real;
    bool m_failsToBind;
    bool m_failsToStart;
};

class FailingInputUnit final : public AudioInputUnit
{
  public:
    explicit FailingInputUnit(std::unique_ptr<AudioInputUnit> real) : m_real(std::move(real)) {}

    InputUnitFormat inputFormat() override { return m_real->inputFormat(); }
    OSStatus AudioOutputUnitStart(CaptureCallback /*capture*/) override { return -EIO; }
    OSStatus AudioOutputUnitStop() override { return m_real->AudioOutputUnitStop(); }

  private:
    std::unique_ptr<AudioInputUnit> m_real;
};

} // namespace

std::string FailingPlatform::stage(FailingCall call)
{
    switch (call) {
    case FailingCall::microphonePermission:
        return "mic-permission";
    case FailingCall::screenRecordingPermission:
        return "screen-recording-permission";
    case FailingCall::bindOutput:
    case FailingCall::startOutput:
        return "output-engine";
    case FailingCall::startInput:
        return "capture-engine";
    default:
        return "app-capture";
    }
}

std::string FailingPlatform::name(FailingCall call)
{
    static constexpr std::array names = {"microphonePermission", "screenRecordingPermission",
                                         "bindOutput",           "startOutput",
                                         "startInput",           "createTap",
                                         "createAggregate",      "createIOProc",
                                         "startDevice"};
    return names.at(static_cast<std::size_t>(call));
}

void FailingPlatform::authorizationStatusForMediaType(AVMediaType mediaType,
                                                      std::function<void(AVAuthorizationStatus)> completionHandler)
{
    if (fails(FailingCall::microphonePermission))
        completionHandler(AVAuthorizationStatus::denied);
    else
        real().captureDevice().authorizationStatusForMediaType(mediaType, std::move(completionHandler));
}

void FailingPlatform::requestAccessForMediaType(AVMediaType mediaType,
                                                std::function<void(bool granted)> completionHandler)
{
    real().captureDevice().requestAccessForMediaType(mediaType, std::move(completionHandler));
}

bool FailingPlatform::CGPreflightScreenCaptureAccess()
{
    return !fails(FailingCall::screenRecordingPermission) &&
           real().screenCaptureAccess().CGPreflightScreenCaptureAccess();
}

bool FailingPlatform::CGRequestScreenCaptureAccess()
{
    return real().screenCaptureAccess().CGRequestScreenCaptureAccess();
}

std::unique_ptr<AudioOutputUnit> FailingPlatform::makeOutputUnit()
{
    return std::make_unique<FailingOutputUnit>(real().audioUnits().makeOutputUnit(), fails(FailingCall::bindOutput),
                                               fails(FailingCall::startOutput));
}

std::unique_ptr<AudioInputUnit> FailingPlatform::makeInputUnit()
{
    auto unit = real().audioUnits().makeInputUnit();
    if (fails(FailingCall::startInput))
        return std::make_unique<FailingInputUnit>(std::move(unit));
    return unit;
}

OSStatus FailingPlatform::AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap)
{
    return fails(FailingCall::createTap) ? -EPERM
                                         : real().processTaps().AudioHardwareCreateProcessTap(description, outTap);
}

OSStatus FailingPlatform::AudioHardwareDestroyProcessTap(AudioObjectID tap)
{
    return real().processTaps().AudioHardwareDestroyProcessTap(tap);
}

OSStatus FailingPlatform::AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice)
{
    return fails(FailingCall::createAggregate)
               ? -ENOMEM
               : real().aggregateDevices().AudioHardwareCreateAggregateDevice(description, outDevice);
}

OSStatus FailingPlatform::AudioHardwareDestroyAggregateDevice(AudioObjectID device)
{
    return real().aggregateDevices().AudioHardwareDestroyAggregateDevice(device);
}

OSStatus FailingPlatform::AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                             AudioDeviceIOBlock block)
{
    return fails(FailingCall::createIOProc)
               ? -ENODEV
               : real().ioProcs().AudioDeviceCreateIOProcIDWithBlock(outIOProcID, device, std::move(block));
}

OSStatus FailingPlatform::AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return real().ioProcs().AudioDeviceDestroyIOProcID(device, proc);
}

OSStatus FailingPlatform::AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return fails(FailingCall::startDevice) ? -EIO : real().ioProcs().AudioDeviceStart(device, proc);
}

OSStatus FailingPlatform::AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return real().ioProcs().AudioDeviceStop(device, proc);
}

} // namespace tolvenary::session
