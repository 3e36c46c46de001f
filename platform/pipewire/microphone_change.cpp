#include "platform/pipewire/microphone_change.h"

#include <utility>

namespace tolvenary
{

namespace
{

constexpr MicrophoneChange::Time patience{0.5};

} // namespace

void MicrophoneChange::observe(std::optional<std::uint64_t> microphone, std::size_t heardSet, Time now)
{
    if (microphone != m_microphone) {
        begin(microphone, heardSet);
        m_since = now;
    } else if (heardSet == m_set || now - m_since > patience) {
        m_leaving.reset();
    }
}

void MicrophoneChange::begin(std::optional<std::uint64_t> microphone, std::size_t heardSet)
{
    const std::optional<std::uint64_t> before = std::exchange(m_microphone, microphone);
    if (!before || !microphone) {
        m_leaving.reset();
        return;
    }
    const bool wasUnheard = m_leaving && heardSet != m_set;
    if (!wasUnheard) {
        m_leaving = before;
        m_set = 1 - m_set;
    } else if (m_leaving == microphone) {
        m_leaving.reset();
        m_set = 1 - m_set;
    }
}

} // namespace tolvenary
