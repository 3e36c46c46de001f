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
        m_real.captureDevice().authorizationStatusForMediaType(mediaType, std::move(completionHandler));
}

void FailingPlatform::requestAccessForMediaType(AVMediaType mediaType,
                                                std::function<void(bool granted)> completionHandler)
{
    m_real.captureDevice().requestAccessForMediaType(mediaType, std::move(completionHandler));
}

bool FailingPlatform::CGPreflightScreenCaptureAccess()
{
    return !fails(FailingCall::screenRecordingPermission) &&
           m_real.screenCaptureAccess().CGPreflightScreenCaptureAccess();
}

bool FailingPlatform::CGRequestScreenCaptureAccess()
{
    return m_real.screenCaptureAccess().CGRequestScreenCaptureAccess();
}

std::unique_ptr<AudioOutputUnit> FailingPlatform::makeOutputUnit()
{
    return std::make_unique<FailingOutputUnit>(m_real.audioUnits().makeOutputUnit(), fails(FailingCall::bindOutput),
                                               fails(FailingCall::startOutput));
}

std::unique_ptr<AudioInputUnit> FailingPlatform::makeInputUnit()
{
    auto real = m_real.audioUnits().makeInputUnit();
    if (fails(FailingCall::startInput))
        return std::make_unique<FailingInputUnit>(std::move(real));
    return real;
}

OSStatus FailingPlatform::AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap)
{
    return fails(FailingCall::createTap) ? -EPERM
                                         : m_real.processTaps().AudioHardwareCreateProcessTap(description, outTap);
}

OSStatus FailingPlatform::AudioHardwareDestroyProcessTap(AudioObjectID tap)
{
    return m_real.processTaps().AudioHardwareDestroyProcessTap(tap);
}

OSStatus FailingPlatform::AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice)
{
    return fails(FailingCall::createAggregate)
               ? -ENOMEM
               : m_real.aggregateDevices().AudioHardwareCreateAggregateDevice(description, outDevice);
}

OSStatus FailingPlatform::AudioHardwareDestroyAggregateDevice(AudioObjectID device)
{
    return m_real.aggregateDevices().AudioHardwareDestroyAggregateDevice(device);
}

OSStatus FailingPlatform::AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                             AudioDeviceIOBlock block)
{
    return fails(FailingCall::createIOProc)
               ? -ENODEV
               : m_real.ioProcs().AudioDeviceCreateIOProcIDWithBlock(outIOProcID, device, std::move(block));
}

OSStatus FailingPlatform::AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return m_real.ioProcs().AudioDeviceDestroyIOProcID(device, proc);
}

OSStatus FailingPlatform::AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return fails(FailingCall::startDevice) ? -EIO : m_real.ioProcs().AudioDeviceStart(device, proc);
}

OSStatus FailingPlatform::AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return m_real.ioProcs().AudioDeviceStop(device, proc);
}

} // namespace tolvenary::session
