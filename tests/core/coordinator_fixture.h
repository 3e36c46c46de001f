#pragma once

#include "core/mix_coordinator.h"
#include "platform/fake/fake_platform.h"
#include "tests/core/event_loop.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

// Lets a failed comparison show the text instead of its bytes.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace tolvenary::test
{

inline constexpr AudioObjectID blackHole = 60;
inline constexpr AudioObjectID otherBlackHole = 61;
inline constexpr std::int32_t music = 100;

/// A coordinator on a fake system in which nothing is picked yet.
class CoordinatorTest : public testing::Test
{
  protected:
    MixCoordinator &coordinator() { return *m_coordinator; }
    FakeCalls &calls() { return m_platform.calls(); }
    std::string status() const { return m_coordinator->status().toStdString(); }

    void addDevice(AudioObjectID id, const std::string &name = "BlackHole 2ch")
    {
        FakeDevice device;
        device.id = id;
        device.name = name;
        device.uid = "uid-" + std::to_string(id);
        m_platform.objects().devices.push_back(device);
    }
    void setApplications(std::vector<SCRunningApplication> applications)
    {
        m_platform.shareableContent().applications.set(std::move(applications));
    }
    void refreshApps()
    {
        m_coordinator->refreshApps();
        processEvents();
    }

    /// A device and an application, both picked.
    void pickAll()
    {
        addDevice(blackHole);
        m_coordinator->refreshBlackHole();
        setApplications({{"Music", music, "music"}});
        refreshApps();
        m_coordinator->setSelectedAppID(music);
    }
    void start()
    {
        m_coordinator->start();
        processEvents();
    }
    void pickAllAndStart()
    {
        pickAll();
        start();
    }

    /// Time passes by whole ticks of the meter; what they queue is published.
    void passTicks(int ticks)
    {
        for (int i = 0; i < ticks; ++i) {
            m_platform.timers().advance(Timers::Duration(0.5));
            processEvents();
        }
    }

    bool inputCycle(float value, std::uint32_t frames, std::size_t channels = 2)
    {
        Samples samples(frames, channels);
        for (std::size_t c = 0; c < channels; ++c)
            samples[c].assign(frames, value);
        return m_platform.audioUnits().inputCycle(samples.constBlock());
    }
    bool tapCycle(float value, std::uint32_t frames)
    {
        std::vector<float> samples(frames, value);
        const auto bytes = static_cast<std::uint32_t>(frames * sizeof(float));
        const std::vector<AudioBuffer> buffers(2, AudioBuffer{1, bytes, samples.data()});
        return m_platform.ioProcs().cycle(buffers) == 1;
    }
    /// What the output plays in a cycle; the left channel, after a look at the right.
    std::vector<float> outputCycle(std::uint32_t frames)
    {
        Samples samples(frames);
        if (!m_platform.audioUnits().outputCycle(samples.block()))
            return {};
        EXPECT_EQ(samples[0], samples[1]);
        return samples[0];
    }

    FakePlatform m_platform;
    std::unique_ptr<MixCoordinator> m_coordinator = std::make_unique<MixCoordinator>(m_platform);
};

} // namespace tolvenary::test
