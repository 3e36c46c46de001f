#include "dev/fake_sound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tolvenary
{

namespace
{

constexpr int tick = 20; // ms
constexpr double rate = 48000;
constexpr std::uint32_t frames = 480;

} // namespace

FakeSound::FakeSound(FakePlatform &platform) : m_platform(platform), m_block(frames)
{
    m_platform.shareableContent().applications.set(
        std::vector<SCRunningApplication>{{"Music Box", 1, "music-box"}, {"Web Browser", 2, "browser"}});
    setDevice(true);
    connect(&m_tick, &QTimer::timeout, this, &FakeSound::pass);
    m_clock.start();
    m_tick.start(tick);
}

bool FakeSound::hasDevice() const
{
    return !m_platform.objects().devices.empty();
}

void FakeSound::setDevice(bool there)
{
    auto &devices = m_platform.objects().devices;
    devices.clear();
    if (there) {
        FakeDevice device;
        device.id = kAudioObjectSystemObject + 1;
        device.name = "BlackHole 2ch";
        device.uid = "blackhole_2ch";
        devices.push_back(device);
    }
    Q_EMIT changed();
}

bool FakeSound::hasPermission() const
{
    return m_platform.screenCaptureAccess().preflight;
}

void FakeSound::setPermission(bool granted)
{
    m_platform.screenCaptureAccess().preflight = granted;
    m_platform.screenCaptureAccess().request = granted;
    Q_EMIT changed();
}

void FakeSound::pass()
{
    const double passed = static_cast<double>(m_clock.restart()) / 1000;
    m_platform.timers().advance(Timers::Duration(passed));
    // After a long drag of the window, no more is owed than can be made up for at once.
    m_owed = std::min(m_owed + passed, 0.2);
    m_peak = 0;
    for (; m_owed > frames / rate; m_owed -= frames / rate)
        cycle();
    Q_EMIT heard();
}

/// The captures first, as in the graph.
void FakeSound::cycle()
{
    if (m_microphone > 0) {
        fill(440, m_microphone);
        const std::array<const float *, 2> channels{m_block.data(), m_block.data()};
        m_platform.audioUnits().inputCycle({channels, frames});
    }
    if (m_applications > 0) {
        fill(330, m_applications);
        constexpr std::uint32_t bytes = frames * sizeof(float);
        const std::array<AudioBuffer, 2> buffers{AudioBuffer{1, bytes, m_block.data()},
                                                 AudioBuffer{1, bytes, m_block.data()}};
        m_platform.ioProcs().cycle(buffers);
    }
    m_frame += frames;
    const std::array<float *, 2> channels{m_block.data(), m_block.data()};
    if (!m_platform.audioUnits().outputCycle({channels, frames}))
        return;
    for (const float sample : m_block)
        m_peak = std::max(m_peak, static_cast<qreal>(std::abs(sample)));
}

void FakeSound::fill(double frequency, qreal amplitude)
{
    for (std::size_t i = 0; i < m_block.size(); ++i) {
        const double turns = frequency * static_cast<double>(m_frame + i) / rate;
        m_block[i] = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * turns));
    }
}

} // namespace tolvenary
