#include "core/mix_coordinator.h"
#include "platform/audio_server.h"
#include "platform/platform.h"

namespace tolvenary
{

namespace
{

/// How long the sound server may be away. One that is restarted is back within a second or two, and the mix with it.
/// After that, nobody is restarting it, and the user is told so.
constexpr Timers::Duration serverPatience{5.0};

} // namespace

/// What keeps a running mix from being heard for now; it goes on by itself when that is over. The counts cannot tell,
/// they only stand still.
std::optional<QString> MixCoordinator::runningTrouble()
{
    switch (m_platform.audioServer().state()) {
    case AudioServerState::gone:
        return QStringLiteral("The sound server went away. Waiting for it to come back.");
    case AudioServerState::hangs:
        return QStringLiteral("The sound server does not answer.");
    case AudioServerState::answers:
        break;
    }
    AudioObjectID device = kAudioObjectUnknown;
    std::uint32_t size = sizeof device;
    AudioOutputUnit *const unit = m_outputEngine.outputNode().audioUnit();
    if (unit != nullptr)
        unit->AudioUnitGetProperty(kAudioOutputUnitProperty_CurrentDevice, kAudioUnitScope_Global, 0, &device, size);
    if (device == kAudioObjectUnknown)
        return QStringLiteral("BlackHole device not found.");
    if (!m_captureEngine.inputNode().inputFormatForBus(0))
        return QStringLiteral("No microphone input available. Set the system default input to your mic.");
    return std::nullopt;
}

/// Whether the sound server has been away for longer than a restart takes.
bool MixCoordinator::isGivenUp(Timers::Duration now)
{
    if (m_platform.audioServer().state() != AudioServerState::gone) {
        m_serverGoneSince.reset();
        return false;
    }
    if (!m_serverGoneSince)
        m_serverGoneSince = now;
    return now - *m_serverGoneSince >= serverPatience;
}

} // namespace tolvenary
