#include "core/mix_coordinator.h"
#include "core/publish.h"
#include "platform/platform.h"

#include <QPointer>

#include <utility>

namespace tolvenary
{

namespace
{

constexpr Timers::Duration meterInterval{0.5};
/// How long a source may take to deliver its first frame before it is called silent.
constexpr Timers::Duration silenceGrace{2.0};

QString silenceDiagnosis(FrameCounts counts)
{
    if (counts.mic == 0 && counts.app != 0)
        return QStringLiteral("Mic silent. Check System Settings → Sound → Input (must be your real mic, not "
                              "BlackHole).");
    if (counts.mic == 0)
        return QStringLiteral("Started but no audio: mic=0, app=0. Check default Input device + Screen Recording "
                              "permission.");
    return QStringLiteral("App silent. Source app may be muted, paused, or blocked by Screen Recording permission.");
}

QString runningLine(const QString &deviceName, FrameCounts counts)
{
    return QStringLiteral("Running → ") + deviceName + QStringLiteral("  mic:") + QString::number(counts.mic) +
           QStringLiteral("  app:") + QString::number(counts.app) + QStringLiteral(" frames");
}

} // namespace

void MixCoordinator::startMeterTimer(const QString &deviceName)
{
    if (m_meterTimer != nullptr)
        m_meterTimer->invalidate();
    const Timers::Duration started = m_platform.timers().now();
    m_meterTimer = m_platform.timers().scheduledTimerWithTimeInterval(
        meterInterval, true, [coordinator = QPointer(this), started, deviceName] {
            if (coordinator)
                coordinator->meterTick(started, deviceName);
        });
}

/// The tick reads; a separate task publishes. Teardown takes back what is not published yet, which would otherwise be
/// the last word, and wrong.
void MixCoordinator::meterTick(Timers::Duration started, const QString &deviceName)
{
    const FrameCounts counts = m_counters->withLock([](const FrameCounts &current) { return current; });
    m_meterReading = MeterReading{counts, started, deviceName};
    QMetaObject::invokeMethod(this, &MixCoordinator::publishMeter, Qt::QueuedConnection);
}

void MixCoordinator::publishMeter()
{
    const auto reading = std::exchange(m_meterReading, std::nullopt);
    if (!reading)
        return;
    const FrameCounts counts = reading->counts;
    publish(m_micFrames, counts.mic, &MixCoordinator::micFramesChanged);
    publish(m_appFrames, counts.app, &MixCoordinator::appFramesChanged);
    if (isGivenUp(m_platform.timers().now())) {
        teardown();
        return setStatus(QStringLiteral("The sound server went away. Press Start again once it is back."));
    }
    if (const auto trouble = runningTrouble())
        return setStatus(*trouble);
    const bool bothHeard = counts.mic != 0 && counts.app != 0;
    const bool silent = m_platform.timers().now() - reading->started > silenceGrace && !bothHeard;
    setStatus(silent ? silenceDiagnosis(counts) : runningLine(reading->deviceName, counts));
}

} // namespace tolvenary
