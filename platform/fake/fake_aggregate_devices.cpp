#include "platform/fake/fake_aggregate_devices.h"

#include <cerrno>

namespace tolvenary
{

OSStatus FakeAggregateDevices::AudioHardwareCreateAggregateDevice(const Dictionary &description,
                                                                  AudioObjectID &outDevice)
{
    m_descriptions.push_back(description);
    const OSStatus status = m_calls.note("AudioHardwareCreateAggregateDevice");
    if (status != noErr || m_makesNothing)
        return status;
    outDevice = m_objects.makeID();
    m_objects.aggregates.push_back(outDevice);
    return noErr;
}

OSStatus FakeAggregateDevices::AudioHardwareDestroyAggregateDevice(AudioObjectID device)
{
    const OSStatus status = m_calls.note("AudioHardwareDestroyAggregateDevice");
    if (std::erase(m_objects.aggregates, device) == 0)
        return -ENOENT;
    return status;
}

} // namespace tolvenary
