#include "tests/session/callback_watch.h"
#include "tests/session/listening.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

bool isHeard(const SoundGraph &graph, const std::string &name)
{
    const GraphNode *node = graph.node(name);
    const auto ours = MixBed::nodesOfProgram(graph);
    return node != nullptr && std::ranges::any_of(graph.links, [&](const GraphLink &link) {
               return link.outputNode == node->id && std::ranges::count(ours, link.inputNode, &GraphNode::id) > 0;
           });
}

} // namespace

/// What the callbacks do in the cycles in which something changes.
class RealTimeChanges : public testing::Test
{
  protected:
    /// Urgent players: one that is late is no hang, but the stall watch would take it for one.
    static MixBedOptions options()
    {
        MixBedOptions made{.urgent = true};
        made.configuration.rate = 44100; // away from 48000 the converters are in the callbacks, too
        return made;
    }

    void SetUp() override
    {
        bed.run();
        ASSERT_TRUE(goesOn());
        beginCounting();
    }

    void TearDown() override
    {
        EXPECT_TRUE(goesOn());
        const CallbackCounts counts = endCounting();
        std::printf("  %lu callbacks: %lu allocations, %lu frees, %lu locks of %zu mutex, %lu waits, %lu system calls; "
                    "%lu callbacks of the sign\n",
                    counts.callbacks, counts.allocations, counts.frees, counts.locks, counts.mutexes, counts.waits,
                    counts.systemCalls, counts.streamCallbacks);
        EXPECT_GT(counts.callbacks, 100U);
        EXPECT_EQ(counts.allocations, 0U);
        EXPECT_EQ(counts.frees, 0U);
        EXPECT_LE(counts.mutexes, 1U) << "more than the frame counters' one is locked";
        EXPECT_LE(counts.locks, counts.callbacks) << "one lock a captured block";
        EXPECT_EQ(counts.waits, 0U);
        EXPECT_EQ(counts.systemCalls, 0U);
    }

    /// Waits for a second of the microphone.
    bool goesOn()
    {
        const auto before = bed.mix().micFrames();
        return bed.waitFor([&] { return bed.mix().micFrames() > before + 48000; });
    }

    MixBed bed{options()};
};

TEST_F(RealTimeChanges, anotherMicrophoneBecomesTheDefault)
{
    const auto other = makeMicrophone(bed.session(), "MONO", "other-microphone");
    const auto voice = speakInto(bed.session(), "other-microphone", {"MONO=tone:600:0.3"});
    for (const std::string next : {"microphone", "other-microphone", "microphone", "other-microphone", "microphone"}) {
        const std::string before = next == "microphone" ? "other-microphone" : "microphone";
        bed.session().chooseDefault("default.configured.audio.source", next);
        EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
            return isHeard(graph, next) && !isHeard(graph, before);
        })) << next;
    }
}

TEST_F(RealTimeChanges, theDeviceGoesAndComesBack)
{
    for (int round = 0; round < 2; ++round) {
        bed.device()->remove();
        EXPECT_TRUE(statusBecomes(bed, "BlackHole device not found.")) << bed.status();
        bed.device() = makeBlackHole(bed.session());
        EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
    }
}

TEST_F(RealTimeChanges, theOnlyMicrophoneGoesAndComesBack)
{
    bed.voice().reset();
    bed.microphone()->remove();
    EXPECT_TRUE(statusBecomes(bed, "No microphone input available.")) << bed.status();
    bed.microphone() = makeMicrophone(bed.session());
    bed.voice() = speakInto(bed.session(), "microphone", {"MONO=tone:997:0.25"});
    EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
}

TEST_F(RealTimeChanges, visitorsComeAndGo)
{
    const auto guests = bed.session().start(
        {TOLVENARY_PLAYER, "--visits", "30", "--name", "visitor", "FL=tone:700:0.05", "FR=tone:900:0.05"});
    EXPECT_TRUE(bed.waitFor([&] { return !guests->isRunning(); }, std::chrono::seconds(40)));
    EXPECT_EQ(guests->output(), "30 of 30 visits\n");
}

TEST_F(RealTimeChanges, sixtyStreamsComeAtOnceAndGoAtOnce)
{
    auto many = bed.playMany(60, {"FL=tone:700:0.005", "FR=tone:900:0.005"});
    EXPECT_TRUE(goesOn());
    many.reset();
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("one-of-many") == nullptr; }));
}

TEST_F(RealTimeChanges, theCyclesGetShorterAndLonger)
{
    for (const std::uint32_t frames : {32U, 8192U, 256U}) {
        bed.session().set("clock.force-quantum", std::to_string(frames));
        EXPECT_TRUE(bed.waitFor([&] { return lengthOfTheLastCycle() == frames; })) << frames;
        EXPECT_TRUE(goesOn()) << frames;
    }
}

TEST_F(RealTimeChanges, aPlayerHangsAndGoesOn)
{
    bed.player()->signal(SIGSTOP);
    const auto isHeld = [](const SoundGraph &graph) { return !isHeard(graph, "player"); };
    EXPECT_TRUE(bed.waitForGraph(isHeld)) << "nobody is linked to it any more";
    EXPECT_TRUE(goesOn());
    const auto before = bed.mix().appFrames();
    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(bed.waitFor([&] { return bed.mix().appFrames() > before + 24000; }, std::chrono::seconds(20)));
}

TEST_F(RealTimeChanges, theGainsMove)
{
    for (const float gain : {0.0F, 2.0F, 0.5F, 1.0F}) {
        bed.mix().setMicGain(gain);
        bed.mix().setAppGain(gain);
        EXPECT_TRUE(goesOn());
    }
}

TEST_F(RealTimeChanges, theMixStopsAndStartsAgain)
{
    for (int round = 0; round < 3; ++round) {
        bed.stop();
        EXPECT_EQ(bed.start(), "Running. In Discord, set Input to BlackHole 2ch.");
        EXPECT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > 0 && bed.mix().appFrames() > 0; }));
    }
}

} // namespace tolvenary::session
