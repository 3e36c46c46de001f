#include "tests/core/coordinator_fixture.h"

#include <atomic>
#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

/// The audio thread of a system that goes on whatever the main thread does: captures first, output last.
class AudioThread
{
  public:
    explicit AudioThread(FakePlatform &platform) : m_platform(platform), m_thread([this] { run(); }) {}
    ~AudioThread()
    {
        m_stop.store(true);
        m_thread.join();
    }
    AudioThread(const AudioThread &) = delete;
    AudioThread &operator=(const AudioThread &) = delete;

    int played() const { return m_played.load(); }

  private:
    static constexpr std::uint32_t frames = 64;

    void run()
    {
        Samples input(frames);
        Samples output(frames);
        const std::vector<AudioBuffer> tapped(2, AudioBuffer{1, frames * sizeof(float), input[0].data()});
        while (!m_stop.load()) {
            m_platform.audioUnits().inputCycle(input.constBlock());
            m_platform.ioProcs().cycle(tapped);
            if (m_platform.audioUnits().outputCycle(output.block()))
                ++m_played;
        }
    }

    FakePlatform &m_platform;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_played{0};
    std::thread m_thread;
};

class ThreadsTest : public CoordinatorTest
{
};

} // namespace

TEST_F(ThreadsTest, runsComeAndGoUnderAnAudioThreadThatNeverStops)
{
    pickAll();
    const AudioThread audio(m_platform);
    for (int run = 0; run < 20; ++run) {
        start();
        ASSERT_TRUE(coordinator().isRunning());
        const int before = audio.played();
        ASSERT_TRUE(waitUntil([&] {
            coordinator().setMicGain(coordinator().micGain() == 1 ? 2.0F : 1.0F);
            coordinator().setAppGain(coordinator().micGain());
            m_platform.timers().advance(Timers::Duration(0.5));
            return audio.played() > before + 10 && coordinator().micFrames() > 0 && coordinator().appFrames() > 0;
        }));
        coordinator().teardown();
    }
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(ThreadsTest, theCoordinatorMayBeDestroyedUnderTheAudioThread)
{
    addDevice(blackHole);
    setApplications({{"Music", music, "music"}});
    const AudioThread audio(m_platform);
    for (int run = 0; run < 20; ++run) {
        m_coordinator = std::make_unique<MixCoordinator>(m_platform);
        coordinator().refreshBlackHole();
        refreshApps();
        coordinator().setSelectedAppID(music);
        start();
        ASSERT_TRUE(coordinator().isRunning());
        const int before = audio.played();
        ASSERT_TRUE(waitUntil([&] { return audio.played() > before + 10; }));
        m_coordinator.reset();
        ASSERT_FALSE(m_platform.holdsAnything());
    }
}
