#pragma once

#include "capture/app_stream_output.h"
#include "capture/process_audio_tap.h"
#include "capture/screen_sink_output.h"
#include "capture/stream_error_delegate.h"
#include "core/mix_feed.h"
#include "devices/blackhole_device.h"
#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/shareable_content.h"
#include "platform/timers.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <qcoro/qcorotask.h>

#include <optional>
#include <vector>

namespace tolvenary
{

class Platform;

/// The one controller: it takes the microphone and what all other programs play, mixes the two at their gains and plays
/// the mix into the BlackHole device; and it publishes the state that the panel shows.
///
/// Stopped, or running from a complete start to the next teardown. Each published field tells of itself twice:
/// objectWillChange before a write takes effect, its own signal after the value has changed.
///
/// Thread: main. What is awaited is continued there, whatever thread the platform answers on; the coordinator may be
/// destroyed, or torn down, meanwhile.
class MixCoordinator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantList availableApps READ availableAppRows NOTIFY availableAppsChanged)
    Q_PROPERTY(QVariant selectedAppID READ selectedAppIDValue WRITE setSelectedAppIDValue NOTIFY selectedAppIDChanged)
    Q_PROPERTY(QVariantList blackHoleDevices READ blackHoleRows NOTIFY blackHoleDevicesChanged)
    Q_PROPERTY(QVariant selectedBlackHole READ selectedBlackHoleRow WRITE setSelectedBlackHoleRow NOTIFY
                   selectedBlackHoleChanged)
    Q_PROPERTY(float micGain READ micGain WRITE setMicGain NOTIFY micGainChanged)
    Q_PROPERTY(float appGain READ appGain WRITE setAppGain NOTIFY appGainChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(qulonglong micFrames READ micFrames NOTIFY micFramesChanged)
    Q_PROPERTY(qulonglong appFrames READ appFrames NOTIFY appFramesChanged)

  public:
    /// No audio work starts. The platform outlives the coordinator.
    explicit MixCoordinator(Platform &platform, QObject *parent = nullptr);
    ~MixCoordinator() override;
    MixCoordinator(const MixCoordinator &) = delete;
    MixCoordinator &operator=(const MixCoordinator &) = delete;

    /// Checks the picks, asks for the permissions, then builds and starts the whole mix; the status tells how it went.
    /// Changes nothing while the mix runs, or while an earlier call is still on its way.
    QCoro::Task<void> start();
    /// Stops and releases whatever there is, also a start on its way. The status stays.
    void teardown();

    /// An output for a stream that may capture the applications in the tap's place: it delivers into the mix as the tap
    /// does. The start sequence makes none; only one of the two may deliver at a time.
    std::shared_ptr<AppStreamOutput> makeStreamOutput();
    /// Takes over a stream with those that it calls; any of them may be missing. The next teardown() lets go of all.
    void setStream(std::unique_ptr<SCStream> stream, std::shared_ptr<AppStreamOutput> streamOutput,
                   std::shared_ptr<StreamErrorDelegate> streamDelegate, std::shared_ptr<ScreenSinkOutput> screenSink);
    bool hasStream() const { return m_stream != nullptr; }

    /// Lists the running applications anew. A pick stays, also when its process is gone.
    QCoro::Task<void> refreshApps();
    /// Lists the devices anew and keeps the selection if its device is still there; otherwise the first is selected.
    void refreshBlackHole();

    const std::vector<SCRunningApplication> &availableApps() const { return m_availableApps; }
    std::optional<std::int32_t> selectedAppID() const { return m_selectedAppID; }
    const std::vector<BlackHoleDevice> &blackHoleDevices() const { return m_blackHoleDevices; }
    const std::optional<BlackHoleDevice> &selectedBlackHole() const { return m_selectedBlackHole; }
    float micGain() const { return m_micGain; }
    float appGain() const { return m_appGain; }
    bool isRunning() const { return m_isRunning; }
    const QString &status() const { return m_status; }
    std::uint64_t micFrames() const { return m_micFrames; }
    std::uint64_t appFrames() const { return m_appFrames; }

    /// The gain stages of this run, or of the last one, which stay and follow the gains; none before the first.
    std::shared_ptr<const AVAudioMixerNode> micMixer() const { return m_micMixer; }
    std::shared_ptr<const AVAudioMixerNode> appMixer() const { return m_appMixer; }

    void setSelectedAppID(std::optional<std::int32_t> processID);
    void setSelectedBlackHole(std::optional<BlackHoleDevice> device);
    void setMicGain(float gain);
    void setAppGain(float gain);
    void setStatus(const QString &status);

    // The same as values for the panel; none is the invalid value.
    QVariantList availableAppRows() const;
    QVariant selectedAppIDValue() const;
    void setSelectedAppIDValue(const QVariant &processID);
    QVariantList blackHoleRows() const;
    QVariant selectedBlackHoleRow() const;
    void setSelectedBlackHoleRow(const QVariant &row);

  Q_SIGNALS:
    void objectWillChange();
    void availableAppsChanged();
    void selectedAppIDChanged();
    void blackHoleDevicesChanged();
    void selectedBlackHoleChanged();
    void micGainChanged();
    void appGainChanged();
    void isRunningChanged();
    void statusChanged();
    void micFramesChanged();
    void appFramesChanged();

  private:
    /// What a start was asked to do, so that a pick changed meanwhile does not split it.
    struct StartRequest {
        SCRunningApplication app;
        BlackHoleDevice device;
    };
    class StartAttempt;

    /// What a tick of the meter found, until it is published.
    struct MeterReading {
        FrameCounts counts;
        Timers::Duration started;
        QString deviceName;
    };

    template <typename T> void publish(T &field, T value, void (MixCoordinator::*changed)());

    std::optional<StartRequest> startRequest();
    std::optional<SCRunningApplication> selectedApp() const;
    void resetCounts();
    QCoro::Task<bool> settleAudioServer();
    QCoro::Task<bool> permissionsGranted(StartAttempt attempt);
    bool enginesStarted(AudioObjectID deviceID);
    void failStart(const char *stage, const Error &error);

    QCoro::Task<Result<void>> ensureMicPermission();
    Result<void> ensureScreenRecordingPermission();
    Result<void> setupOutputEngine(AudioObjectID deviceID);
    AVAudioPCMBufferPool &pool();
    Result<void> setupCaptureEngine();
    QCoro::Task<Result<void>> startAppCapture(SCRunningApplication app);
    ProcessAudioTap::OnBuffer appBufferCallback() const;
    void releaseStream();
    QCoro::Task<void> stopStream(SCStream *stream);

    void buildMixGraph();
    void startMeterTimer(const QString &deviceName);
    void meterTick(Timers::Duration started, const QString &deviceName);
    void publishMeter();
    std::optional<QString> runningTrouble();
    bool isGivenUp(Timers::Duration now);

    Platform &m_platform;

    std::vector<SCRunningApplication> m_availableApps;
    std::optional<std::int32_t> m_selectedAppID;
    std::vector<BlackHoleDevice> m_blackHoleDevices;
    std::optional<BlackHoleDevice> m_selectedBlackHole;
    float m_micGain = 1.0F;
    float m_appGain = 1.0F;
    bool m_isRunning = false;
    QString m_status;
    std::uint64_t m_micFrames = 0;
    std::uint64_t m_appFrames = 0;

    /// Counts starts and teardowns; what was begun under an older number has been overtaken and ends quietly.
    std::uint64_t m_generation = 0;
    bool m_starting = false;
    std::uint64_t m_refreshes = 0; ///< of the applications: only the last one's answer counts

    const AVAudioFormat m_mixFormat;
    const std::shared_ptr<FrameCounters> m_counters;

    // Destroyed from the last to the first, each stopping its own callbacks: the sources before the output that plays
    // them, all of them before the players they feed, and the pool behind every buffer.
    std::optional<AVAudioPCMBufferPool> m_pool; ///< made by the first start: megabytes that a window alone needs not
    const std::shared_ptr<MixFeed> m_feed;
    std::shared_ptr<AVAudioMixerNode> m_micMixer;
    std::shared_ptr<AVAudioMixerNode> m_appMixer;
    AVAudioEngine m_outputEngine;
    AVAudioEngine m_captureEngine;
    std::vector<std::unique_ptr<SCStream>> m_stoppingStreams; ///< given up by a teardown, until they have stopped
    std::unique_ptr<SCStream> m_stream;
    std::shared_ptr<AppStreamOutput> m_streamOutput;
    std::shared_ptr<StreamErrorDelegate> m_streamDelegate;
    std::shared_ptr<ScreenSinkOutput> m_screenSink;
    std::unique_ptr<ProcessAudioTap> m_processTap;
    std::optional<MeterReading> m_meterReading;
    std::optional<Timers::Duration> m_serverGoneSince;
    std::unique_ptr<Timer> m_meterTimer;
};

} // namespace tolvenary
