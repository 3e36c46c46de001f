#include "core/mix_coordinator.h"

#include "platform/audio_server.h"
#include "platform/process_info.h"

#include "core/answer.h"

#include <QPointer>
#include <algorithm>

namespace tolvenary
{

namespace
{

constexpr double mixRate = 48000;
constexpr std::uint32_t mixChannels = 2;

// Two captures and their conversions, and a dozen cycles more for a late wake-up. A buffer holds the longest cycle that
// a sound server allows, converted from the lowest usual rate.
constexpr std::uint32_t poolBuffers = 32;
constexpr std::size_t poolBufferBytes = std::size_t{2} * sizeof(float) * 16384;

} // namespace

MixCoordinator::MixCoordinator(Platform &platform, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_mixFormat(AVAudioFormat::standardFormat(mixRate, mixChannels).value()),
      m_bufferPool(poolBuffers, poolBufferBytes),
      m_feed(std::make_shared<MixFeed>()),
      m_outputEngine(platform.audioUnits()),
      m_captureEngine(platform.audioUnits()),
      m_status(tr("Idle"))
{
}

// No audio work of its own, but the callbacks must have ended before the members go, and in the order of a stop.
MixCoordinator::~MixCoordinator()
{
    m_meterTimer.reset();
    m_processTap.reset();
    m_captureEngine.reset();
    m_outputEngine.reset();
}

const SCRunningApplication *MixCoordinator::pickedApp() const
{
    if (!m_selectedAppID)
        return nullptr;
    const auto found = std::ranges::find(m_availableApps, *m_selectedAppID, &SCRunningApplication::processID);
    return found == m_availableApps.end() ? nullptr : &*found;
}

QCoro::Task<void> MixCoordinator::start()
{
    if (m_isRunning || m_isStarting)
        co_return;
    const SCRunningApplication *app = pickedApp();
    if (app == nullptr) {
        setStatus(tr("Pick an app first."));
        co_return;
    }
    if (!m_selectedBlackHole) {
        setStatus(tr("BlackHole device not found."));
        co_return;
    }
    const QPointer<MixCoordinator> self(this);
    m_isStarting = true;
    co_await runStartSequence(*app, *m_selectedBlackHole);
    if (self)
        m_isStarting = false;
}

QCoro::Task<void> MixCoordinator::runStartSequence(SCRunningApplication app, BlackHoleDevice device)
{
    const QPointer<MixCoordinator> self(this);
    const unsigned teardowns = m_teardowns;
    const auto isUnwanted = [&] { return !self || m_teardowns != teardowns; };

    m_feed->resetCounts();
    publish(m_micFrames, 0U, &MixCoordinator::micFramesChanged);
    publish(m_appFrames, 0U, &MixCoordinator::appFramesChanged);

    // So that no step below waits for a server that does not answer; what is wrong with it, the steps will say.
    co_await answerTo<bool>([this](auto answered) { m_platform.audioServer().settle(std::move(answered)); });
    if (isUnwanted())
        co_return;

    Result<void> done = co_await ensureMicPermission();
    if (isUnwanted())
        co_return;
    if (!done)
        co_return fail("mic-permission", done.error());

    done = ensureScreenRecordingPermission();
    if (!done)
        co_return fail("screen-recording-permission", done.error());

    done = setupOutputEngine(device.id);
    if (!done)
        co_return fail("output-engine", done.error());

    done = setupCaptureEngine();
    if (!done)
        co_return fail("capture-engine", done.error());

    done = co_await startAppCapture(std::move(app));
    if (isUnwanted())
        co_return;
    if (!done)
        co_return fail("app-capture", done.error());

    const QString deviceName = QString::fromStdString(device.name);
    startMeterTimer(deviceName);
    publish(m_isRunning, true, &MixCoordinator::isRunningChanged);
    setStatus(tr("Running. In Discord, set Input to %1.").arg(deviceName));
}

void MixCoordinator::fail(const QString &stage, const Error &error)
{
    teardown();
    setStatus(tr("Start failed [%1]: %2 (%3 %4)")
                  .arg(stage, QString::fromStdString(error.localizedDescription), QString::fromStdString(error.domain),
                       QString::number(error.code)));
}

QCoro::Task<Result<void>> MixCoordinator::startAppCapture(SCRunningApplication)
{
    // The picked application does not narrow the capture: everything is heard but ourselves, and the panel says so.
    const std::weak_ptr<MixFeed> weakFeed = m_feed;
    const auto deliver = [weakFeed](AVAudioPCMBufferPtr buffer) {
        if (const std::shared_ptr<MixFeed> feed = weakFeed.lock())
            feed->deliverApplication(std::move(buffer));
    };
    const std::vector<std::int32_t> ourselves{m_platform.processInfo().processIdentifier()};
    Result<std::unique_ptr<ProcessAudioTap>> tap =
        ProcessAudioTap::make(m_platform, m_bufferPool, ourselves, m_mixFormat, deliver);
    if (!tap)
        co_return tl::unexpected(tap.error());
    if (Result<void> started = (*tap)->start(); !started)
        co_return started;
    m_processTap = std::move(*tap);
    co_return Result<void>();
}

void MixCoordinator::teardown()
{
    ++m_teardowns;
    if (m_meterTimer)
        m_meterTimer->invalidate();
    m_meterTimer.reset();

    if (m_processTap)
        m_processTap->stop();
    m_processTap.reset();

    if (m_captureEngine.isRunning()) {
        m_captureEngine.inputNode().removeTapOnBus(0);
        m_captureEngine.stop();
    }
    m_captureEngine.reset();

    if (m_outputEngine.isRunning())
        m_outputEngine.stop();
    m_outputEngine.reset();

    publish(m_isRunning, false, &MixCoordinator::isRunningChanged);
}

void MixCoordinator::setMicGain(float gain)
{
    publish(m_micGain, gain, &MixCoordinator::micGainChanged);
    if (m_micMixer)
        m_micMixer->setOutputVolume(m_micGain);
}

void MixCoordinator::setAppGain(float gain)
{
    publish(m_appGain, gain, &MixCoordinator::appGainChanged);
    if (m_appMixer)
        m_appMixer->setOutputVolume(m_appGain);
}

void MixCoordinator::setStatus(const QString &status)
{
    publish(m_status, status, &MixCoordinator::statusChanged);
}

} // namespace tolvenary
