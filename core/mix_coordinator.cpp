#include "core/mix_coordinator.h"

#include "capture/block_conversion.h"
#include "core/publish.h"
#include "platform/platform.h"

#include <cstdlib>

namespace tolvenary
{

namespace
{

constexpr double mixSampleRate = 48000.0;
constexpr std::uint32_t mixChannels = 2;

/// In a steady run each source has one or two buffers on their way. The rest is for cycles that the output misses;
/// there are no more, because what waits longer is late anyway.
constexpr std::uint32_t poolSlots = 32;
/// Sound servers are set to no longer cycles.
constexpr std::uint32_t longestCycle = 8192;
/// Few graphs run below the mix's rate, and none that were seen below half of it.
constexpr double lowestRate = mixSampleRate / 2;

AVAudioFormat makeMixFormat()
{
    const auto format = AVAudioFormat::standardFormat(mixSampleRate, mixChannels);
    if (!format)
        std::abort();
    return *format;
}

} // namespace

MixCoordinator::MixCoordinator(Platform &platform, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_status(QStringLiteral("Idle")),
      m_mixFormat(makeMixFormat()),
      m_counters(std::make_shared<FrameCounters>()),
      m_feed(std::make_shared<MixFeed>(m_counters)),
      m_outputEngine(platform.audioUnits()),
      m_captureEngine(platform.audioUnits())
{
}

MixCoordinator::~MixCoordinator() = default;

AVAudioPCMBufferPool &MixCoordinator::pool()
{
    if (m_pool)
        return *m_pool;
    const std::size_t slotFrames = outputCapacity(mixSampleRate, lowestRate, longestCycle);
    return m_pool.emplace(poolSlots, slotFrames * mixChannels * sizeof(float));
}

void MixCoordinator::teardown()
{
    ++m_generation;
    m_starting = false;
    if (m_meterTimer != nullptr) {
        m_meterTimer->invalidate();
        m_meterTimer.reset();
    }
    m_meterReading.reset();
    m_serverGoneSince.reset();
    releaseStream();
    if (m_processTap != nullptr) {
        m_processTap->stop();
        m_processTap.reset();
    }
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

void MixCoordinator::setSelectedAppID(std::optional<std::int32_t> processID)
{
    publish(m_selectedAppID, processID, &MixCoordinator::selectedAppIDChanged);
}

void MixCoordinator::setMicGain(float gain)
{
    publish(m_micGain, gain, &MixCoordinator::micGainChanged);
    if (m_micMixer != nullptr)
        m_micMixer->setOutputVolume(m_micGain);
}

void MixCoordinator::setAppGain(float gain)
{
    publish(m_appGain, gain, &MixCoordinator::appGainChanged);
    if (m_appMixer != nullptr)
        m_appMixer->setOutputVolume(m_appGain);
}

void MixCoordinator::setStatus(const QString &status)
{
    publish(m_status, status, &MixCoordinator::statusChanged);
}

} // namespace tolvenary
