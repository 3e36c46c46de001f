#include "platform/fake/fake_process_taps.h"

#include <cerrno>

namespace tolvenary
{

OSStatus FakeProcessTaps::AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap)
{
    m_descriptions.push_back(description);
    const OSStatus status = m_calls.note("AudioHardwareCreateProcessTap");
    if (status != noErr || m_makesNothing)
        return status;
    outTap = m_objects.makeID();
    m_objects.taps[outTap] = "fake-tap-" + std::to_string(outTap);
    return noErr;
}

OSStatus FakeProcessTaps::AudioHardwareDestroyProcessTap(AudioObjectID tap)
{
    const OSStatus status = m_calls.note("AudioHardwareDestroyProcessTap");
    if (m_objects.taps.erase(tap) == 0)
        return -ENOENT;
    return status;
}

} // namespace tolvenary
