#include "platform/pipewire/stall_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr GlobalId good = 50;
constexpr GlobalId hung = 60;

/// A graph in which a node runs when all that it waits for does, ticked every second cycle.
class StallWatchTest : public testing::Test
{
  protected:
    std::set<GlobalId> m_streams{good, hung};
    std::set<GlobalId> m_hanging;
    bool m_microphoneHangs = false;
    StallWatch m_watch;
    StallWatch::Progress m_progress;
    double m_now = 0;

    const StallWatch::Verdict &verdict() const { return m_watch.verdict(); }

    void runTicks(int ticks)
    {
        for (int i = 0; i < ticks; ++i) {
            runCycle();
            runCycle();
            m_now += 0.05;
            m_progress.isTrialLinked = verdict().tried.has_value();
            m_watch.tick(m_progress, m_streams, StallWatch::Time(m_now));
        }
    }

  private:
    void runCycle()
    {
        bool tapRuns = true;
        for (const GlobalId stream : m_hanging)
            tapRuns = tapRuns && (!m_streams.contains(stream) || verdict().heldStreams.contains(stream));
        const bool outputRuns =
            (tapRuns || !verdict().isTapInOrder) && (!m_microphoneHangs || !verdict().isMicrophoneInOrder);
        m_progress.tap += tapRuns ? 1 : 0;
        m_progress.probe += verdict().tried && m_hanging.contains(*verdict().tried) ? 0 : 1;
        m_progress.microphone += m_microphoneHangs ? 0 : 1;
        m_progress.output += outputRuns ? 1 : 0;
    }
};

TEST_F(StallWatchTest, whileAllRunsNothingIsHeldAndOrderIsKept)
{
    runTicks(100);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, aHangingStreamDoesNotStopTheOutput)
{
    runTicks(10);
    m_hanging = {hung};
    runTicks(4);
    const std::uint64_t before = m_progress.output;
    runTicks(10);
    EXPECT_EQ(m_progress.output, before + 20);
}

TEST_F(StallWatchTest, onlyTheHangingStreamIsHeldAndTheOrderIsRestored)
{
    runTicks(10);
    m_hanging = {hung};
    runTicks(20);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    EXPECT_TRUE(verdict().isTapInOrder);
}

TEST_F(StallWatchTest, aStreamThatRunsAgainIsHeardAgain)
{
    m_hanging = {hung};
    runTicks(30);
    m_hanging = {};
    runTicks(60);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, tryingAHangingStreamAgainNeverStopsTheOutputNorTheOtherStreams)
{
    m_hanging = {hung};
    runTicks(20);
    const StallWatch::Progress before = m_progress;
    runTicks(1000);
    EXPECT_EQ(m_progress.output, before.output + 2000);
    EXPECT_EQ(m_progress.tap, before.tap + 2000);
    EXPECT_LT(m_progress.probe, before.probe + 2000) << "it was not tried";
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
}

TEST_F(StallWatchTest, twoHangingStreamsAreBothHeld)
{
    m_hanging = {good, hung};
    runTicks(40);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(good, hung));
    EXPECT_TRUE(verdict().isTapInOrder);
}

TEST_F(StallWatchTest, aHeldStreamThatGoesIsForgotten)
{
    m_hanging = {hung};
    runTicks(30);
    m_streams = {good};
    runTicks(1);
    EXPECT_THAT(verdict().heldStreams, IsEmpty());
}

TEST_F(StallWatchTest, aHangingMicrophoneDoesNotStopTheApplications)
{
    runTicks(10);
    m_microphoneHangs = true;
    runTicks(4);
    const std::uint64_t before = m_progress.output;
    runTicks(10);
    EXPECT_EQ(m_progress.output, before + 20);
    m_microphoneHangs = false;
    runTicks(4);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, aMicrophoneThatHangsWhileAStreamIsOnTrialDoesNotStopTheOutputForGood)
{
    runTicks(10);
    m_hanging = {hung};
    while (verdict().isTapInOrder || verdict().heldStreams.contains(hung))
        runTicks(1);
    m_microphoneHangs = true;
    runTicks(60); // two seconds of trial and one more
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    EXPECT_FALSE(verdict().isMicrophoneInOrder);
    const std::uint64_t before = m_progress.output;
    runTicks(1000);
    EXPECT_EQ(m_progress.output, before + 2000) << "also whenever it is tried again";
}

TEST_F(StallWatchTest, aMicrophoneThatHangsWhileNoStreamIsAdmittedDoesNotStopTheOutputForGood)
{
    runTicks(10);
    m_hanging = {hung};
    while (verdict().heldStreams != m_streams)
        runTicks(1);
    m_microphoneHangs = true;
    runTicks(100);
    const std::uint64_t before = m_progress.output;
    runTicks(10);
    EXPECT_EQ(m_progress.output, before + 20);
    m_hanging = {};
    m_microphoneHangs = false;
    runTicks(100);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, aMicrophoneAndAStreamThatHangAtOnceDoNotStopTheOthers)
{
    runTicks(10);
    m_hanging = {hung};
    m_microphoneHangs = true;
    runTicks(200);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    EXPECT_FALSE(verdict().isMicrophoneInOrder);
    const StallWatch::Progress before = m_progress;
    runTicks(100);
    EXPECT_EQ(m_progress.output, before.output + 200);
    EXPECT_EQ(m_progress.tap, before.tap + 200);
    m_hanging = {};
    m_microphoneHangs = false;
    runTicks(200);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, aStandingGraphIsNobodysFault)
{
    runTicks(10);
    for (int i = 0; i < 100; ++i)
        m_watch.tick(m_progress, m_streams, StallWatch::Time(m_now += 0.05));
    EXPECT_THAT(verdict().heldStreams, IsEmpty());
    EXPECT_TRUE(verdict().isMicrophoneInOrder);
    EXPECT_TRUE(verdict().isTapInOrder);
    runTicks(1);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

} // namespace
} // namespace tolvenary
