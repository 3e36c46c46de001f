#include "platform/pipewire/microphone_hold.h"

namespace tolvenary
{

namespace
{

constexpr MicrophoneHold::Time hangsAfter{2};

} // namespace

void MicrophoneHold::follow(std::optional<std::uint64_t> microphone)
{
    if (microphone == m_microphone)
        return;
    *this = {};
    m_microphone = microphone;
}

void MicrophoneHold::observe(bool isAwaited, Time now)
{
    if (m_pause.isUnderWay()) {
        if (m_pause.isOver(now))
            m_pause.end();
        return;
    }
    if (!isAwaited) {
        m_awaitedSince.reset();
        m_pause.reset();
        return;
    }
    if (!m_awaitedSince)
        m_awaitedSince = now;
    if (now - *m_awaitedSince < hangsAfter)
        return;
    m_awaitedSince.reset();
    m_pause.begin(now);
}

} // namespace tolvenary
