#include "core/mix_coordinator.h"

namespace tolvenary
{

namespace
{

constexpr Timers::Duration meterInterval{0.5};
constexpr Timers::Duration silenceTime{2.0};

} // namespace

void MixCoordinator::startMeterTimer(const QString &deviceName)
{
    if (m_meterTimer)
        m_meterTimer->invalidate();
    const Timers::Duration startInstant = m_platform.timers().now();
    const auto tick = [this, startInstant, deviceName] {
        const FrameCounts counts = m_feed->counts();
        const unsigned teardowns = m_teardowns;
        // Published from the event loop; not any more when the mix was stopped meanwhile, so that "Stopped" stays.
        QMetaObject::invokeMethod(
            this,
            [this, counts, startInstant, deviceName, teardowns] {
                if (m_teardowns == teardowns)
                    publishMeter(counts, startInstant, deviceName);
            },
            Qt::QueuedConnection);
    };
    m_meterTimer = m_platform.timers().scheduledTimerWithTimeInterval(meterInterval, true, tick);
}

void MixCoordinator::publishMeter(FrameCounts counts, Timers::Duration startInstant, const QString &deviceName)
{
    publish(m_micFrames, counts.mic, &MixCoordinator::micFramesChanged);
    publish(m_appFrames, counts.app, &MixCoordinator::appFramesChanged);
    const bool mayJudge = m_platform.timers().now() - startInstant > silenceTime;
    if (mayJudge && counts.mic == 0 && counts.app != 0) {
        setStatus(tr("Mic silent. Check System Settings → Sound → Input (must be your real mic, not BlackHole)."));
    } else if (mayJudge && counts.mic == 0) {
        setStatus(tr("Started but no audio: mic=0, app=0. Check default Input device + Screen Recording permission."));
    } else if (mayJudge && counts.app == 0) {
        setStatus(tr("App silent. Source app may be muted, paused, or blocked by Screen Recording permission."));
    } else {
        setStatus(tr("Running → %1  mic:%2  app:%3 frames")
                      .arg(deviceName, QString::number(counts.mic), QString::number(counts.app)));
    }
}

} // namespace tolvenary
