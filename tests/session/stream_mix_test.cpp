#include "tests/session/mix_bed.h"
#include "tests/session/silent_tap_platform.h"
#include "tests/session/support/tone_level.h"

#include <QCoro/QCoroTask>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr double microphoneTone = 997; // at 0.25
constexpr double playerTone = 1499;    // at 0.2
constexpr double otherTone = 700;      // at 0.3

/// A mix that runs, whose applications come from a stream instead of its tap.
class StreamMix
{
  public:
    explicit StreamMix(MixBed &bed) : m_bed(bed), m_platform(bed.platform()), m_mix(m_platform) {}

    MixCoordinator &mix() { return m_mix; }
    int errors() const { return m_errors; }

    void run()
    {
        m_bed.settle();
        m_mix.refreshBlackHole();
        QCoro::waitFor(m_mix.refreshApps());
        m_mix.setSelectedAppID(m_bed.player()->pid());
        QCoro::waitFor(m_mix.start());
        if (!m_mix.isRunning())
            throw std::runtime_error(m_mix.status().toStdString());
    }

    /// Gives the coordinator a stream that hears one process, or all but this.
    void setStream(std::optional<std::int32_t> process)
    {
        auto delegate = std::make_shared<StreamErrorDelegate>([this](const Error &) { ++m_errors; });
        auto output = m_mix.makeStreamOutput();
        auto sink = std::make_shared<ScreenSinkOutput>();
        auto stream = m_platform.captureStreams().makeStream({process}, delegate);
        stream->addStreamOutput(output, SCStreamOutputType::audio);
        stream->addStreamOutput(sink, SCStreamOutputType::screen);
        const auto started = std::make_shared<std::atomic<bool>>(false);
        stream->startCaptureWithCompletionHandler([started](const Result<void> &result) { *started = !!result; });
        m_mix.setStream(std::move(stream), std::move(output), std::move(delegate), std::move(sink));
        if (!m_bed.waitFor([&] { return started->load(); }))
            throw std::runtime_error("the stream does not start");
    }

    // The stream's sound comes when its queue comes to it, so that a machine that is late breaks it, and a break sounds
    // a little like every tone: both of these look again until it is as it should be.

    /// Whether the device gets to carry the tone at this amplitude.
    bool becomesHeard(Recorder &recorder, double tone, double amplitude)
    {
        return isOnce(recorder, tone, [&](double level) { return std::abs(decibels(level / amplitude)) < 0.1; });
    }
    /// Whether the device carries nothing of the tone.
    bool isUnheard(Recorder &recorder, double tone)
    {
        return isOnce(recorder, tone, [](double level) { return level < 1e-5; });
    }

  private:
    bool isOnce(Recorder &recorder, double tone, const std::function<bool(double)> &isRight)
    {
        const std::vector<double> tones = {microphoneTone, playerTone, otherTone};
        const auto index = static_cast<std::size_t>(std::find(tones.begin(), tones.end(), tone) - tones.begin());
        for (int attempt = 0; attempt < 40; ++attempt) {
            const Recording recording = m_bed.record(recorder, 24000);
            const auto heard = recording.part(0, recording.longestUnbroken());
            const double level = toneAmplitudes(heard, recording.rate, tones)[index];
            if (isRight(level)) {
                std::printf("  %.0f Hz: %.6f\n", tone, level);
                return true;
            }
        }
        return false;
    }

    MixBed &m_bed;
    SilentTapPlatform m_platform;
    std::atomic<int> m_errors = 0;
    MixCoordinator m_mix; // declared last: its stream calls all of the above
};

bool hasStreamNode(const SoundGraph &graph)
{
    return graph.node("com.tolvenary.stream") != nullptr;
}

bool hasNoNodes(const SoundGraph &graph)
{
    return MixBed::nodesOfProgram(graph).empty();
}

} // namespace

TEST(StreamMix, whatAStreamCapturesOfOneApplicationIsInTheDeviceBesideTheMicrophone)
{
    MixBed bed;
    const auto other =
        playApplication(bed.session(), {.nodeName = "other", .channels = {"FL=tone:700:0.3", "FR=tone:700:0.3"}});
    StreamMix mix(bed);
    mix.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(mix.isUnheard(recorder, playerTone)) << "the tap is silent";

    mix.setStream(bed.player()->pid());
    ASSERT_TRUE(mix.becomesHeard(recorder, playerTone, 0.2));
    EXPECT_TRUE(mix.isUnheard(recorder, otherTone));
    EXPECT_TRUE(mix.becomesHeard(recorder, microphoneTone, 0.25));
    EXPECT_TRUE(bed.waitFor([&] { return mix.mix().appFrames() > 48000; })) << "counted as the tap's sound is";
    mix.mix().teardown();
}

TEST(StreamMix, teardownStopsALiveStreamAndLeavesNoNode)
{
    MixBed bed;
    StreamMix mix(bed);
    mix.run();
    mix.setStream(bed.player()->pid());
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        return hasStreamNode(graph) && graph.node("com.tolvenary.stream")->state == "running";
    }));
    mix.mix().teardown();
    EXPECT_FALSE(mix.mix().hasStream());
    EXPECT_TRUE(bed.waitForGraph(hasNoNodes)) << MixBed::nodesOfProgram(SoundGraph::read()).size() << " nodes left";
    EXPECT_EQ(mix.errors(), 0);
}

TEST(StreamMix, theCoordinatorsEndLeavesNoNodeOfALiveStream)
{
    MixBed bed;
    {
        StreamMix mix(bed);
        mix.run();
        mix.setStream(std::nullopt);
        ASSERT_TRUE(hasStreamNode(SoundGraph::read()));
    }
    EXPECT_TRUE(bed.waitForGraph(hasNoNodes));
}

TEST(StreamMix, aServerThatGoesAwayEndsTheStreamWithOneErrorAndTheMixStaysItsOwn)
{
    MixBed bed;
    StreamMix mix(bed);
    mix.run();
    mix.setStream(bed.player()->pid());
    bed.unplugAll();
    bed.session().stopSoundServers();
    ASSERT_TRUE(bed.waitFor([&] { return mix.errors() > 0; }));
    EXPECT_TRUE(mix.mix().isRunning());
    bed.session().startSoundServers();
    bed.plugAll();
    // The mix comes back by itself; the stream does not, and its end is not told again.
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(mix.becomesHeard(recorder, microphoneTone, 0.25));
    EXPECT_FALSE(hasStreamNode(SoundGraph::read()));
    EXPECT_EQ(mix.errors(), 1);
    mix.mix().teardown();
    EXPECT_TRUE(bed.waitForGraph(hasNoNodes));
    EXPECT_EQ(mix.errors(), 1);
}

} // namespace tolvenary::session
