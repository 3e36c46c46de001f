#include "platform/pipewire/microphone_hold.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

constexpr MicrophoneHold::Time hangsAfter{2};
constexpr MicrophoneHold::Time shortestHold{2};
constexpr MicrophoneHold::Time longestHold{16};

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
    if (m_releaseAt) {
        if (now >= *m_releaseAt)
            m_releaseAt.reset();
        return;
    }
    if (!isAwaited) {
        m_awaitedSince.reset();
        m_pause = {};
        return;
    }
    if (!m_awaitedSince)
        m_awaitedSince = now;
    if (now - *m_awaitedSince < hangsAfter)
        return;
    m_awaitedSince.reset();
    m_pause = std::clamp(m_pause * 2, shortestHold, longestHold);
    m_releaseAt = now + m_pause;
}

} // namespace tolvenary
