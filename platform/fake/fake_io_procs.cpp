#include "platform/fake/fake_io_procs.h"

#include <algorithm>
#include <cerrno>

namespace tolvenary
{

OSStatus FakeIOProcs::AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                         AudioDeviceIOBlock block)
{
    const OSStatus status = m_calls.note("AudioDeviceCreateIOProcIDWithBlock");
    if (status != noErr || m_makesNothing)
        return status;
    const std::lock_guard guard(m_mutex);
    outIOProcID = AudioDeviceIOProcID{++m_lastID};
    m_procs[outIOProcID] = {device, std::move(block), false};
    return noErr;
}

OSStatus FakeIOProcs::AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc)
{
    const OSStatus status = m_calls.note("AudioDeviceDestroyIOProcID");
    const std::lock_guard guard(m_mutex);
    const auto found = m_procs.find(proc);
    if (found == m_procs.end() || found->second.device != device)
        return -ENOENT;
    m_procs.erase(found);
    return status;
}

OSStatus FakeIOProcs::AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc)
{
    const OSStatus status = m_calls.note("AudioDeviceStart");
    return status != noErr ? status : setRunning(device, proc, true);
}

OSStatus FakeIOProcs::AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc)
{
    const OSStatus status = m_calls.note("AudioDeviceStop");
    const OSStatus stopped = setRunning(device, proc, false);
    return status != noErr ? status : stopped;
}

OSStatus FakeIOProcs::setRunning(AudioObjectID device, AudioDeviceIOProcID proc, bool running)
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_procs.find(proc);
    if (found == m_procs.end() || found->second.device != device)
        return -ENOENT;
    found->second.running = running;
    return noErr;
}

int FakeIOProcs::cycle(ConstAudioBufferList input)
{
    const std::lock_guard guard(m_mutex);
    const AudioTimeStamp now;
    int called = 0;
    for (const auto &[id, proc] : m_procs) {
        if (!proc.running)
            continue;
        proc.block(now, input, now, {}, now);
        ++called;
    }
    return called;
}

std::size_t FakeIOProcs::running() const
{
    const std::lock_guard guard(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_procs.begin(), m_procs.end(), [](const auto &entry) { return entry.second.running; }));
}

} // namespace tolvenary
