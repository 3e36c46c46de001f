#include "tests/session/stepped_platform.h"

namespace tolvenary::session
{

namespace
{

template <typename Take> OSStatus unlessFailed(const SteppedPlatform::Step &step, const char *name, Take take)
{
    const OSStatus status = step(name);
    return status == noErr ? take() : status;
}

class SteppedOutputUnit final : public AudioOutputUnit
{
  public:
    SteppedOutputUnit(std::unique_ptr<AudioOutputUnit> real, const SteppedPlatform::Step &step)
        : m_real(std::move(real)), m_step(step)
    {
    }

    OSStatus AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, const void *data,
                                  std::uint32_t size) override
    {
        return unlessFailed(m_step, "bind the output",
                            [&] { return m_real->AudioUnitSetProperty(property, scope, element, data, size); });
    }
    OSStatus AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, void *outData,
                                  std::uint32_t &ioSize) override
    {
        return unlessFailed(m_step, "read the binding",
                            [&] { return m_real->AudioUnitGetProperty(property, scope, element, outData, ioSize); });
    }
    double sampleRate() override { return m_real->sampleRate(); }
    OSStatus AudioOutputUnitStart(RenderCallback render) override
    {
        return unlessFailed(m_step, "start the output",
                            [&] { return m_real->AudioOutputUnitStart(std::move(render)); });
    }
    OSStatus AudioOutputUnitStop() override
    {
        return unlessFailed(m_step, "stop the output", [&] { return m_real->AudioOutputUnitStop(); });
    }

  private:
    std::unique_ptr<AudioOutputUnit> m_real;
    SteppedPlatform::Step m_step;
};

class SteppedInputUnit final : public AudioInputUnit
{
  public:
    SteppedInputUnit(std::unique_ptr<AudioInputUnit> real, const SteppedPlatform::Step &step)
        : m_real(std::move(real)), m_step(step)
    {
    }

    InputUnitFormat inputFormat() override
    {
        m_step("read the input format");
        return m_real->inputFormat();
    }
    OSStatus AudioOutputUnitStart(CaptureCallback capture) override
    {
        return unlessFailed(m_step, "start the input",
                            [&] { return m_real->AudioOutputUnitStart(std::move(capture)); });
    }
    OSStatus AudioOutputUnitStop() override
    {
        return unlessFailed(m_step, "stop the input", [&] { return m_real->AudioOutputUnitStop(); });
    }

  private:
    std::unique_ptr<AudioInputUnit> m_real;
    SteppedPlatform::Step m_step;
};

} // namespace

void SteppedPlatform::authorizationStatusForMediaType(AVMediaType mediaType,
                                                      std::function<void(AVAuthorizationStatus)> completionHandler)
{
    if (m_step("ask for the microphone") != noErr)
        return completionHandler(AVAuthorizationStatus::denied);
    real().captureDevice().authorizationStatusForMediaType(mediaType, std::move(completionHandler));
}

void SteppedPlatform::requestAccessForMediaType(AVMediaType mediaType,
                                                std::function<void(bool granted)> completionHandler)
{
    real().captureDevice().requestAccessForMediaType(mediaType, std::move(completionHandler));
}

bool SteppedPlatform::CGPreflightScreenCaptureAccess()
{
    return m_step("ask for the screen") == noErr && real().screenCaptureAccess().CGPreflightScreenCaptureAccess();
}

bool SteppedPlatform::CGRequestScreenCaptureAccess()
{
    return real().screenCaptureAccess().CGRequestScreenCaptureAccess();
}

std::unique_ptr<AudioOutputUnit> SteppedPlatform::makeOutputUnit()
{
    return std::make_unique<SteppedOutputUnit>(real().audioUnits().makeOutputUnit(), m_step);
}

std::unique_ptr<AudioInputUnit> SteppedPlatform::makeInputUnit()
{
    return std::make_unique<SteppedInputUnit>(real().audioUnits().makeInputUnit(), m_step);
}

OSStatus SteppedPlatform::AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap)
{
    return unlessFailed(m_step, "create the tap",
                        [&] { return real().processTaps().AudioHardwareCreateProcessTap(description, outTap); });
}

OSStatus SteppedPlatform::AudioHardwareDestroyProcessTap(AudioObjectID tap)
{
    return unlessFailed(m_step, "destroy the tap",
                        [&] { return real().processTaps().AudioHardwareDestroyProcessTap(tap); });
}

OSStatus SteppedPlatform::AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice)
{
    return unlessFailed(m_step, "create the aggregate", [&] {
        return real().aggregateDevices().AudioHardwareCreateAggregateDevice(description, outDevice);
    });
}

OSStatus SteppedPlatform::AudioHardwareDestroyAggregateDevice(AudioObjectID device)
{
    return unlessFailed(m_step, "destroy the aggregate",
                        [&] { return real().aggregateDevices().AudioHardwareDestroyAggregateDevice(device); });
}

OSStatus SteppedPlatform::AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                             AudioDeviceIOBlock block)
{
    return unlessFailed(m_step, "create the callback", [&] {
        return real().ioProcs().AudioDeviceCreateIOProcIDWithBlock(outIOProcID, device, std::move(block));
    });
}

OSStatus SteppedPlatform::AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return unlessFailed(m_step, "destroy the callback",
                        [&] { return real().ioProcs().AudioDeviceDestroyIOProcID(device, proc); });
}

OSStatus SteppedPlatform::AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return unlessFailed(m_step, "start the tap", [&] { return real().ioProcs().AudioDeviceStart(device, proc); });
}

OSStatus SteppedPlatform::AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc)
{
    return unlessFailed(m_step, "stop the tap", [&] { return real().ioProcs().AudioDeviceStop(device, proc); });
}

} // namespace tolvenary::session
