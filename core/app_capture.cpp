#include "core/mix_coordinator.h"
#include "platform/platform.h"
#include "platform/process_info.h"

#include <array>

namespace tolvenary
{

/// Counts a buffer of what the applications play, and plays it. real-time
ProcessAudioTap::OnBuffer MixCoordinator::appBufferCallback() const
{
    return [feed = std::weak_ptr(m_feed)](AVAudioPCMBufferPtr buffer) {
        if (const auto target = feed.lock())
            target->feedApp(std::move(buffer));
    };
}

/// The application narrows nothing, as the panel tells its user: everything but our own sound is captured.
QCoro::Task<Result<void>> MixCoordinator::startAppCapture(SCRunningApplication)
{
    const std::array ownPID{m_platform.processInfo().processIdentifier()};
    auto tap = ProcessAudioTap::create(m_platform, pool(), ownPID, m_mixFormat, appBufferCallback());
    if (!tap)
        co_return Result<void>(tl::unexpected(tap.error()));
    const Result<void> started = (*tap)->start();
    if (started)
        m_processTap = std::move(*tap);
    co_return started;
}

} // namespace tolvenary
