#include "platform/pipewire/pipewire_process_taps.h"

#include <cerrno>

namespace tolvenary
{

OSStatus PipeWireProcessTaps::AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap)
{
    if (description.uuid.empty())
        return -EINVAL;
    const Connection::Lock lock(m_session.connection());
    if (!m_session.connection().isResponsive())
        return -ENOTCONN;
    // Remembered as processes, not as objects, which are others when the server has restarted.
    Tap tap{description.uuid, {}};
    for (const AudioObjectID process : description.stereoGlobalTapButExcludeProcesses) {
        if (const GraphClient *client = m_session.client(process); client != nullptr && client->processId)
            tap.excludedProcesses.insert(*client->processId);
    }
    outTap = m_session.ids().make();
    m_taps.emplace(outTap, std::move(tap));
    return noErr;
}

OSStatus PipeWireProcessTaps::AudioHardwareDestroyProcessTap(AudioObjectID tap)
{
    return m_taps.erase(tap) > 0 ? noErr : -ENOENT;
}

const PipeWireProcessTaps::Tap *PipeWireProcessTaps::tap(AudioObjectID id) const
{
    const auto found = m_taps.find(id);
    return found == m_taps.end() ? nullptr : &found->second;
}

const PipeWireProcessTaps::Tap *PipeWireProcessTaps::tapWithUid(const std::string &uid) const
{
    for (const auto &[id, tap] : m_taps) {
        if (tap.uid == uid)
            return &tap;
    }
    return nullptr;
}

} // namespace tolvenary
