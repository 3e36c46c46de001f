#include "platform/pipewire/stall_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tolvenary
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr GlobalId good = 50;
constexpr GlobalId hung = 60;
// Ours, and the microphone's.
constexpr GlobalId tap = 70;
constexpr GlobalId output = 71;
constexpr GlobalId microphone = 72;

/// A graph in which a node runs when all that it waits for does, ticked every second cycle.
class StallWatchTest : public testing::Test
{
  protected:
    std::set<GlobalId> m_streams{good, hung};
    std::set<GlobalId> m_hanging;
    bool m_microphoneHangs = false;
    bool m_tapHangs = false;
    bool m_serverTells = true;
    StallWatch m_watch;
    StallWatch::Progress m_progress;
    std::map<GlobalId, std::uint64_t> m_probeCycles;
    double m_now = 0;

    const StallWatch::Verdict &verdict() const { return m_watch.verdict(); }

    void runTicks(int ticks)
    {
        for (int i = 0; i < ticks; ++i) {
            runCycle();
            runCycle();
            m_now += 0.05;
            m_progress.probes.clear();
            for (const GlobalId stream : verdict().tried)
                m_progress.probes[stream] = m_probeCycles[stream];
            m_progress.unfinished.reset();
            if (m_serverTells && verdict().asksWhoStands)
                tellUnfinished();
            m_watch.tick(m_progress, m_streams, StallWatch::Time(m_now));
        }
    }

  private:
    bool isHeard(GlobalId stream) const
    {
        return m_streams.contains(stream) && !verdict().heldStreams.contains(stream);
    }

    void tellUnfinished()
    {
        m_progress.unfinished = m_hanging;
        if (m_tapHangs || std::ranges::any_of(m_hanging, [&](GlobalId stream) { return isHeard(stream); }))
            m_progress.unfinished->insert({tap, output});
        if (m_microphoneHangs)
            m_progress.unfinished->insert({microphone, output});
    }

    void runCycle()
    {
        const bool tapRuns =
            !m_tapHangs && std::ranges::none_of(m_hanging, [&](GlobalId stream) { return isHeard(stream); });
        const bool outputRuns =
            (tapRuns || !verdict().isTapInOrder) && (!m_microphoneHangs || !verdict().isMicrophoneInOrder);
        m_progress.tap += tapRuns ? 1 : 0;
        for (const GlobalId stream : verdict().tried)
            m_probeCycles[stream] += m_hanging.contains(stream) ? 0 : 1;
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
    runTicks(6);
    const std::uint64_t before = m_progress.output;
    runTicks(10);
    EXPECT_EQ(m_progress.output, before + 20);
}

TEST_F(StallWatchTest, aStreamThatIsLateForATenthOfASecondIsWaitedFor)
{
    runTicks(10);
    m_hanging = {hung};
    runTicks(3);
    m_hanging = {};
    for (int i = 0; i < 10; ++i) {
        runTicks(1);
        EXPECT_EQ(verdict(), StallWatch::Verdict());
    }
}

TEST_F(StallWatchTest, aTapThatHasYetToRunForTheFirstTimeIsWaitedFor)
{
    m_now = 10000; // the machine has run for longer
    m_tapHangs = true;
    for (int ticks = 0; ticks < 10; ++ticks) {
        runTicks(1);
        EXPECT_THAT(verdict().heldStreams, IsEmpty());
        EXPECT_TRUE(verdict().isTapInOrder);
    }
    m_tapHangs = false;
    runTicks(1);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, theMicrophoneGoesOnBeforeItIsKnownWhoHangs)
{
    runTicks(10);
    m_hanging = {hung};
    runTicks(3);
    const std::uint64_t before = m_progress.output;
    runTicks(1);
    EXPECT_EQ(m_progress.output, before + 2);
    EXPECT_THAT(verdict().heldStreams, IsEmpty());
    m_hanging = {};
    runTicks(1);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, theServerIsAskedOnlyWhileTheTapStands)
{
    m_serverTells = false;
    runTicks(10);
    EXPECT_FALSE(verdict().asksWhoStands);
    m_hanging = {hung};
    runTicks(6);
    EXPECT_TRUE(verdict().asksWhoStands);
    EXPECT_THAT(verdict().heldStreams, IsEmpty()) << "before it has told";
    m_hanging = {};
    runTicks(1);
    EXPECT_FALSE(verdict().asksWhoStands);
}

TEST_F(StallWatchTest, theOthersGoOnAsSoonAsItIsToldWhoHangs)
{
    runTicks(10);
    m_hanging = {hung};
    while (!verdict().asksWhoStands)
        runTicks(1);
    const StallWatch::Progress before = m_progress;
    runTicks(4);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    EXPECT_TRUE(verdict().isTapInOrder);
    EXPECT_EQ(m_progress.tap, before.tap + 6) << "all but the tick in which it was told";
    EXPECT_EQ(m_progress.output, before.output + 8) << "the microphone's sound goes on all the while";
}

TEST_F(StallWatchTest, whereTheServerTellsNothingAllAreHeldAndTheOthersComeInAgain)
{
    m_serverTells = false;
    runTicks(10);
    m_hanging = {hung};
    runTicks(25);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(good, hung));
    const std::uint64_t before = m_progress.output;
    runTicks(100);
    EXPECT_EQ(m_progress.output, before + 200);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
}

TEST_F(StallWatchTest, whereOnlyTheTapItselfHasNotFinishedAllAreHeldAndTheMicrophoneIsHeard)
{
    runTicks(10);
    m_tapHangs = true;
    runTicks(60);
    EXPECT_FALSE(verdict().isTapInOrder);
    const std::uint64_t before = m_progress.output;
    runTicks(100);
    EXPECT_EQ(m_progress.output, before + 200);
    m_tapHangs = false;
    runTicks(100);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, aStreamThatWasLateForHalfASecondIsBackWithinAnother)
{
    runTicks(10);
    m_hanging = {hung};
    runTicks(10);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    m_hanging = {};
    runTicks(10);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

// Each trial sends a program descriptors that it does not take while it hangs.
TEST_F(StallWatchTest, aStreamThatKeepsHangingIsTriedOnce)
{
    runTicks(10);
    m_hanging = {hung};
    while (verdict().tried.empty())
        runTicks(1);
    for (int minute = 0; minute < 60; ++minute) {
        runTicks(60 * 20);
        ASSERT_THAT(verdict().tried, ElementsAre(hung));
    }
    m_hanging = {};
    runTicks(6);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, moreThanCanBeTriedAtOnceTakeTurnsLessAndLessOften)
{
    m_streams.clear();
    for (GlobalId stream = 100; stream < 120; ++stream)
        m_streams.insert(stream);
    m_hanging = m_streams;
    std::map<GlobalId, int> trials;
    const auto runMinutes = [&](int minutes) {
        trials.clear();
        for (int ticks = 0; ticks < minutes * 60 * 20; ++ticks) {
            const auto before = verdict().tried;
            runTicks(1);
            for (const GlobalId stream : verdict().tried)
                trials[stream] += before.contains(stream) ? 0 : 1;
        }
    };
    runMinutes(1);
    EXPECT_EQ(trials.size(), m_streams.size()) << "each gets its turn";
    runMinutes(60);
    for (const auto &[stream, times] : trials)
        EXPECT_LE(times, 20) << stream;
    m_hanging = {};
    runTicks(10 * 60 * 20);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
}

TEST_F(StallWatchTest, ofManyThatAreHeldWhoRunsDoesNotWaitForThoseThatHang)
{
    m_serverTells = false;
    m_hanging = {30, 40};
    m_streams = m_hanging;
    for (GlobalId stream = 100; stream < 120; ++stream)
        m_streams.insert(stream);
    runTicks(25);
    ASSERT_EQ(verdict().heldStreams, m_streams);
    runTicks(250); // some six for each of the twenty, and three trials of two seconds
    EXPECT_EQ(verdict().heldStreams, m_hanging);
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
    EXPECT_THAT(verdict().tried, ElementsAre(hung));
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

TEST_F(StallWatchTest, whoIsGivenTheIdOfOneThatHungIsNotHeldForIt)
{
    m_hanging = {hung};
    while (!verdict().tried.contains(hung))
        runTicks(1);
    ASSERT_THAT(verdict().heldStreams, ElementsAre(hung));
    m_watch.forget(hung);
    m_hanging = {};
    EXPECT_EQ(verdict(), StallWatch::Verdict());
    runTicks(30);
    EXPECT_EQ(verdict(), StallWatch::Verdict());
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

TEST_F(StallWatchTest, aMicrophoneThatHangsWhileAStreamIsOnTrialDoesNotStopTheOutput)
{
    runTicks(10);
    m_hanging = {hung};
    while (verdict().tried.empty())
        runTicks(1);
    m_microphoneHangs = true;
    runTicks(4);
    EXPECT_THAT(verdict().heldStreams, ElementsAre(hung));
    EXPECT_FALSE(verdict().isMicrophoneInOrder);
    const std::uint64_t before = m_progress.output;
    runTicks(1000);
    EXPECT_EQ(m_progress.output, before + 2000) << "also whenever it is tried again";
}

TEST_F(StallWatchTest, aMicrophoneThatHangsBeforeItIsToldWhichStreamDoesNotStopTheOutputForGood)
{
    runTicks(10);
    m_hanging = {hung};
    while (!verdict().asksWhoStands)
        runTicks(1);
    m_microphoneHangs = true;
    runTicks(10);
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
    runTicks(10);
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
