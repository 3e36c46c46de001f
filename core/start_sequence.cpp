#include "core/answer.h"
#include "core/publish.h"
#include "core/start_attempt.h"
#include "platform/audio_server.h"
#include "platform/platform.h"

#include <algorithm>

namespace tolvenary
{

QCoro::Task<void> MixCoordinator::start()
{
    if (m_isRunning || m_starting)
        co_return;
    const std::optional<StartRequest> request = startRequest();
    if (!request)
        co_return;
    m_starting = true;
    ++m_generation;
    const StartAttempt attempt(*this);
    resetCounts();

    co_await settleAudioServer();
    if (!attempt.goesOn())
        co_return;
    const bool granted = co_await permissionsGranted(attempt);
    if (!granted || !enginesStarted(request->device.id))
        co_return;
    const Result<void> capturing = co_await startAppCapture(request->app);
    if (!attempt.goesOn())
        co_return;
    if (!capturing)
        co_return failStart("app-capture", capturing.error());

    const QString deviceName = QString::fromStdString(request->device.name);
    startMeterTimer(deviceName);
    m_starting = false;
    publish(m_isRunning, true, &MixCoordinator::isRunningChanged);
    setStatus(QStringLiteral("Running. In Discord, set Input to ") + deviceName + QLatin1Char('.'));
}

/// Empty when something was not picked; the status then says what.
std::optional<MixCoordinator::StartRequest> MixCoordinator::startRequest()
{
    auto app = selectedApp();
    if (!app) {
        setStatus(QStringLiteral("Pick an app first."));
        return std::nullopt;
    }
    if (!m_selectedBlackHole) {
        setStatus(QStringLiteral("BlackHole device not found."));
        return std::nullopt;
    }
    return StartRequest{std::move(*app), *m_selectedBlackHole};
}

/// Empty also when the picked process is no longer listed.
std::optional<SCRunningApplication> MixCoordinator::selectedApp() const
{
    const auto isSelected = [this](const SCRunningApplication &app) { return app.processID == m_selectedAppID; };
    const auto found = std::find_if(m_availableApps.begin(), m_availableApps.end(), isSelected);
    return found == m_availableApps.end() ? std::nullopt : std::optional(*found);
}

void MixCoordinator::resetCounts()
{
    m_counters->withLock([](FrameCounts &counts) { counts = {}; });
    publish(m_micFrames, std::uint64_t{0}, &MixCoordinator::micFramesChanged);
    publish(m_appFrames, std::uint64_t{0}, &MixCoordinator::appFramesChanged);
}

/// After this no step waits for a server that does not answer: each fails at once, with a text of its own for the user.
QCoro::Task<bool> MixCoordinator::settleAudioServer()
{
    co_return co_await answer<bool>([this](auto done) { m_platform.audioServer().settle(done); });
}

/// False also when the attempt was overtaken while the user was asked.
QCoro::Task<bool> MixCoordinator::permissionsGranted(StartAttempt attempt)
{
    const Result<void> microphone = co_await ensureMicPermission();
    if (!attempt.goesOn())
        co_return false;
    if (!microphone) {
        failStart("mic-permission", microphone.error());
        co_return false;
    }
    const Result<void> screenRecording = ensureScreenRecordingPermission();
    if (!screenRecording)
        failStart("screen-recording-permission", screenRecording.error());
    co_return screenRecording.has_value();
}

bool MixCoordinator::enginesStarted(AudioObjectID deviceID)
{
    if (const auto output = setupOutputEngine(deviceID); !output) {
        failStart("output-engine", output.error());
        return false;
    }
    if (const auto capture = setupCaptureEngine(); !capture) {
        failStart("capture-engine", capture.error());
        return false;
    }
    return true;
}

void MixCoordinator::failStart(const char *stage, const Error &error)
{
    teardown();
    setStatus(QStringLiteral("Start failed [%1]: %2 (%3 %4)")
                  .arg(QLatin1String(stage), QString::fromStdString(error.localizedDescription),
                       QString::fromStdString(error.domain), QString::number(error.code)));
}

} // namespace tolvenary
