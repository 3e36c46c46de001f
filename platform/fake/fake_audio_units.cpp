#include "platform/fake/fake_audio_units.h"

#include <cerrno>
#include <cstring>

namespace tolvenary
{

class FakeAudioUnits::OutputUnit final : public AudioOutputUnit
{
  public:
    explicit OutputUnit(FakeAudioUnits &units) : m_units(units)
    {
        const std::lock_guard guard(m_units.m_mutex);
        m_units.m_output = this;
        ++m_units.m_alive;
    }
    ~OutputUnit() override
    {
        m_units.m_calls.note("~AudioOutputUnit");
        const std::lock_guard guard(m_units.m_mutex);
        if (m_units.m_output == this)
            m_units.m_output = nullptr;
        --m_units.m_alive;
    }

    OSStatus AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, const void *data,
                                  std::uint32_t size) override
    {
        const OSStatus status = m_units.m_calls.note("AudioUnitSetProperty");
        if (status != noErr)
            return status;
        AudioObjectID device = kAudioObjectUnknown;
        if (!isCurrentDevice(property, scope, element) || size != sizeof device)
            return -EINVAL;
        std::memcpy(&device, data, sizeof device);
        if (m_units.m_objects.device(device) == nullptr)
            return -ENODEV;
        m_device = device;
        return noErr;
    }

    OSStatus AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, void *outData,
                                  std::uint32_t &ioSize) override
    {
        const OSStatus status = m_units.m_calls.note("AudioUnitGetProperty");
        if (status != noErr)
            return status;
        const AudioObjectID device = m_units.readsBack.value_or(m_device);
        if (!isCurrentDevice(property, scope, element) || ioSize != sizeof device)
            return -EINVAL;
        std::memcpy(outData, &device, sizeof device);
        return noErr;
    }

    double sampleRate() override { return m_units.outputSampleRate; }

    OSStatus AudioOutputUnitStart(RenderCallback render) override
    {
        const OSStatus status = m_units.m_calls.note("AudioOutputUnitStart output");
        const std::lock_guard guard(m_units.m_mutex);
        if (status == noErr)
            m_render = std::move(render);
        return status;
    }
    OSStatus AudioOutputUnitStop() override
    {
        const OSStatus status = m_units.m_calls.note("AudioOutputUnitStop output");
        const std::lock_guard guard(m_units.m_mutex);
        m_render = nullptr;
        return status;
    }

    const RenderCallback &callback() const { return m_render; }
    AudioObjectID device() const { return m_device; }

  private:
    static bool isCurrentDevice(std::uint32_t property, std::uint32_t scope, std::uint32_t element)
    {
        return property == kAudioOutputUnitProperty_CurrentDevice && scope == kAudioUnitScope_Global && element == 0;
    }

    FakeAudioUnits &m_units;
    AudioObjectID m_device = kAudioObjectUnknown;
    RenderCallback m_render;
};

class FakeAudioUnits::InputUnit final : public AudioInputUnit
{
  public:
    explicit InputUnit(FakeAudioUnits &units) : m_units(units)
    {
        const std::lock_guard guard(m_units.m_mutex);
        m_units.m_input = this;
        ++m_units.m_alive;
    }
    ~InputUnit() override
    {
        m_units.m_calls.note("~AudioInputUnit");
        const std::lock_guard guard(m_units.m_mutex);
        if (m_units.m_input == this)
            m_units.m_input = nullptr;
        --m_units.m_alive;
    }

    InputUnitFormat inputFormat() override { return m_units.inputFormat; }

    OSStatus AudioOutputUnitStart(CaptureCallback capture) override
    {
        const OSStatus status = m_units.m_calls.note("AudioOutputUnitStart input");
        const std::lock_guard guard(m_units.m_mutex);
        if (status == noErr)
            m_capture = std::move(capture);
        return status;
    }
    OSStatus AudioOutputUnitStop() override
    {
        const OSStatus status = m_units.m_calls.note("AudioOutputUnitStop input");
        const std::lock_guard guard(m_units.m_mutex);
        m_capture = nullptr;
        return status;
    }

    const CaptureCallback &callback() const { return m_capture; }

  private:
    FakeAudioUnits &m_units;
    CaptureCallback m_capture;
};

std::unique_ptr<AudioOutputUnit> FakeAudioUnits::makeOutputUnit()
{
    m_calls.note("makeOutputUnit");
    return hasOutputUnit ? std::make_unique<OutputUnit>(*this) : nullptr;
}

std::unique_ptr<AudioInputUnit> FakeAudioUnits::makeInputUnit()
{
    m_calls.note("makeInputUnit");
    return hasInputUnit ? std::make_unique<InputUnit>(*this) : nullptr;
}

bool FakeAudioUnits::outputCycle(PlanarBlock output)
{
    const std::lock_guard guard(m_mutex);
    if (m_output == nullptr || !m_output->callback())
        return false;
    m_output->callback()(output);
    return true;
}

bool FakeAudioUnits::inputCycle(ConstPlanarBlock input)
{
    const std::lock_guard guard(m_mutex);
    if (m_input == nullptr || !m_input->callback())
        return false;
    m_input->callback()(AudioTimeStamp{}, input);
    return true;
}

AudioObjectID FakeAudioUnits::boundDevice() const
{
    const std::lock_guard guard(m_mutex);
    return m_output != nullptr ? m_output->device() : kAudioObjectUnknown;
}

bool FakeAudioUnits::outputIsRunning() const
{
    const std::lock_guard guard(m_mutex);
    return m_output != nullptr && m_output->callback();
}

bool FakeAudioUnits::inputIsRunning() const
{
    const std::lock_guard guard(m_mutex);
    return m_input != nullptr && m_input->callback();
}

} // namespace tolvenary
