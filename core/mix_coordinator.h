#pragma once

#include "capture/process_audio_tap.h"
#include "core/mix_feed.h"
#include "devices/black_hole_device.h"
#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/shareable_content.h"
#include "platform/timers.h"

#include <QCoroTask>
#include <QObject>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace tolvenary
{

/// The one controller: owns the two engines and the application tap, starts and stops the mix, and publishes what the
/// panel shows.
///
/// Observed twice: objectWillChange() comes before a published field changes, the property's own signal after it has.
/// Thread: main. A failure reaches the user as one line, status.
class MixCoordinator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantList availableApps READ availableAppRows NOTIFY availableAppsChanged)
    Q_PROPERTY(QVariant selectedAppID READ selectedAppIDValue WRITE setSelectedAppIDValue NOTIFY selectedAppIDChanged)
    Q_PROPERTY(QVariantList blackHoleDevices READ blackHoleDeviceRows NOTIFY blackHoleDevicesChanged)
    Q_PROPERTY(QVariant selectedBlackHole READ selectedBlackHoleRow WRITE setSelectedBlackHoleRow NOTIFY
                   selectedBlackHoleChanged)
    Q_PROPERTY(float micGain READ micGain WRITE setMicGain NOTIFY micGainChanged)
    Q_PROPERTY(float appGain READ appGain WRITE setAppGain NOTIFY appGainChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(qulonglong micFrames READ micFrames NOTIFY micFramesChanged)
    Q_PROPERTY(qulonglong appFrames READ appFrames NOTIFY appFramesChanged)

  public:
    /// `platform` outlives the coordinator. Starts no audio.
    explicit MixCoordinator(Platform &platform, QObject *parent = nullptr);
    ~MixCoordinator() override;
    MixCoordinator(const MixCoordinator &) = delete;
    MixCoordinator &operator=(const MixCoordinator &) = delete;

    /// Starts the mix, or says in status why not. A call while the mix runs, or while another start is under way,
    /// changes nothing; a teardown() meanwhile ends it.
    QCoro::Task<void> start();
    /// Stops whatever runs and releases it; status stays as it is. Safe to call at any time.
    void teardown();

    QCoro::Task<void> refreshApps();
    Q_INVOKABLE void refreshBlackHole();

    const std::vector<SCRunningApplication> &availableApps() const { return m_availableApps; }
    std::optional<std::int32_t> selectedAppID() const { return m_selectedAppID; }
    const std::vector<BlackHoleDevice> &blackHoleDevices() const { return m_blackHoleDevices; }
    const std::optional<BlackHoleDevice> &selectedBlackHole() const { return m_selectedBlackHole; }
    float micGain() const { return m_micGain; }
    float appGain() const { return m_appGain; }
    bool isRunning() const { return m_isRunning; }
    QString status() const { return m_status; }
    quint64 micFrames() const { return m_micFrames; }
    quint64 appFrames() const { return m_appFrames; }

    void setSelectedAppID(std::optional<std::int32_t> processID);
    void setSelectedBlackHole(const std::optional<BlackHoleDevice> &device);
    /// Linear factors; not clamped. While the mix runs the change is heard within the next cycle.
    void setMicGain(float gain);
    void setAppGain(float gain);
    void setStatus(const QString &status);

    const AVAudioFormat &mixFormat() const { return m_mixFormat; }

  signals:
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
    template <typename T, typename V> void publish(T &field, V &&value, void (MixCoordinator::*changed)());

    QVariantList availableAppRows() const;
    QVariant selectedAppIDValue() const;
    void setSelectedAppIDValue(const QVariant &processID);
    QVariantList blackHoleDeviceRows() const;
    QVariant selectedBlackHoleRow() const;
    void setSelectedBlackHoleRow(const QVariant &row);

    const SCRunningApplication *pickedApp() const;
    QCoro::Task<void> runStartSequence(SCRunningApplication app, BlackHoleDevice device);
    void fail(const QString &stage, const Error &error);

    QCoro::Task<Result<void>> ensureMicPermission();
    Result<void> ensureScreenRecordingPermission();
    Result<void> setupOutputEngine(AudioObjectID deviceID);
    Result<void> bindOutput(AudioObjectID deviceID);
    void buildOutputGraph();
    Result<void> setupCaptureEngine();
    QCoro::Task<Result<void>> startAppCapture(SCRunningApplication app);
    void startMeterTimer(const QString &deviceName);
    void publishMeter(FrameCounts counts, Timers::Duration startInstant, const QString &deviceName);

    Platform &m_platform;
    const AVAudioFormat m_mixFormat;
    AVAudioPCMBufferPool m_bufferPool; // before all that holds its buffers
    std::shared_ptr<MixFeed> m_feed;
    AVAudioEngine m_outputEngine;
    AVAudioEngine m_captureEngine;
    std::shared_ptr<AVAudioMixerNode> m_micMixer;
    std::shared_ptr<AVAudioMixerNode> m_appMixer;
    std::unique_ptr<ProcessAudioTap> m_processTap;
    std::unique_ptr<Timer> m_meterTimer;

    std::vector<SCRunningApplication> m_availableApps;
    std::optional<std::int32_t> m_selectedAppID;
    std::vector<BlackHoleDevice> m_blackHoleDevices;
    std::optional<BlackHoleDevice> m_selectedBlackHole;
    float m_micGain = 1;
    float m_appGain = 1;
    bool m_isRunning = false;
    QString m_status;
    quint64 m_micFrames = 0;
    quint64 m_appFrames = 0;

    bool m_isStarting = false;
    unsigned m_teardowns = 0; ///< tells a start that has been waiting whether it is still wanted
};

/// Sets a published field: says so before, and after if it is really another value.
template <typename T, typename V> void MixCoordinator::publish(T &field, V &&value, void (MixCoordinator::*changed)())
{
    emit objectWillChange();
    if (field == value)
        return;
    field = std::forward<V>(value);
    emit(this->*changed)();
}

} // namespace tolvenary
