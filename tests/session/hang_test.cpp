#include "tests/session/mix_bed.h"
#include "tests/session/support/steady_gaps.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

namespace tolvenary::session
{

namespace
{

constexpr double microphoneTone = 997;
constexpr double applicationTone = 1499;

double heardAmplitude(MixBed &bed, Recorder &recorder, double tone)
{
    const Recording recording = bed.record(recorder, 9600);
    const auto heard = recording.part(0, recording.longestUnbroken());
    const std::vector<double> tones{microphoneTone, applicationTone, 601};
    return toneAmplitudes(heard, recording.rate, tones)
        .at(static_cast<std::size_t>(std::ranges::find(tones, tone) - tones.begin()));
}

bool becomesHeard(MixBed &bed, Recorder &recorder, double tone, double amplitude)
{
    for (int fifthsOfASecond = 0; fifthsOfASecond < 100; ++fifthsOfASecond) {
        if (std::abs(heardAmplitude(bed, recorder, tone) - amplitude) < std::max(0.01 * amplitude, 0.001))
            return true;
    }
    return false;
}

} // namespace

// A native program that is stopped never finishes its cycle, and all that is linked behind it waits.
TEST(Hang, aStoppedApplicationDoesNotSilenceTheMicrophoneAndIsHeardAgainWhenItGoesOn)
{
    MixBed bed;
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));

    bed.player()->signal(SIGSTOP);
    const quint64 before = bed.mix().micFrames();
    ASSERT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > before + 48000; }));
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));

    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(becomesHeard(bed, recorder, applicationTone, 0.2));
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));
}

// It is tried meanwhile, by one link: each would cost the server descriptors, as the program does not take them.
TEST(Hang, theOtherApplicationsAreHeardWithoutAGapWhileOneIsStopped)
{
    MixBedOptions options{.voice = {"MONO=steady:0.25"}, .urgent = true};
    options.player.channels = {"FL=steady:0.1", "FR=steady:0.1"};
    MixBed bed(options);
    const auto other = playApplication(
        bed.session(),
        {.nodeName = "other", .applicationName = "Other", .channels = {"FL=steady:0.3", "FR=steady:0.3"}});
    bed.run();
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("other", "FL"), bed.monitor("FL")});
    const auto isTried = [](const SoundGraph &graph) {
        const GraphNode *probe = graph.node("com.tolvenary.probe");
        return probe != nullptr &&
               std::ranges::any_of(graph.links, [&](const GraphLink &link) { return link.inputNode == probe->id; });
    };
    const auto isThere = [](const SoundGraph &graph) { return graph.node("com.tolvenary.probe") != nullptr; };

    bed.player()->signal(SIGSTOP);
    ASSERT_TRUE(bed.waitForGraph(isTried)) << "it is not held";
    SteadyGaps gaps;
    for (int looks = 0; looks < 16; ++looks) {
        gaps += findSteadyGaps(bed.record(recorder, 24000), 2, 0.1F);
        EXPECT_TRUE(isTried(SoundGraph::read())) << "the trial ended, after " << looks << " looks";
    }
    std::printf("  %zu gaps of ours, %zu of a source, %zu of %zu jumps of the clock\n", gaps.ours, gaps.sources,
                gaps.xruns, gaps.jumps);
    EXPECT_EQ(gaps.ours, 0U) << (gaps.accounts.empty() ? "" : gaps.accounts.front());

    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) { return !isThere(graph); }));
}

// All are held back until the one that hangs is found.
TEST(Hang, ofManyApplicationsOnlyTheOneThatIsStoppedIsMissing)
{
    constexpr std::size_t many = 24;
    constexpr double each = 0.02;
    MixBed bed;
    std::vector<std::unique_ptr<ChildProcess>> others;
    for (std::size_t i = 0; i < many; ++i) {
        const std::string name = "other " + std::to_string(i);
        others.push_back(playApplication(
            bed.session(),
            {.nodeName = name, .applicationName = name, .channels = {"FL=steady:0.02", "FR=steady:0.02"}}));
    }
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    const auto isHeardOf = [&](std::size_t applications) {
        const Recording recording = bed.record(recorder, 9600);
        const auto heard = recording.part(0, recording.longestUnbroken());
        const double sum = std::accumulate(heard.begin(), heard.end(), 0.0);
        return std::abs(sum / static_cast<double>(heard.size()) - each * static_cast<double>(applications)) < each / 4;
    };
    ASSERT_TRUE(bed.waitFor([&] { return isHeardOf(many); }));

    others[many / 3]->signal(SIGSTOP);
    const auto stopped = std::chrono::steady_clock::now();
    EXPECT_TRUE(bed.waitFor([&] { return isHeardOf(many - 1); }));
    const std::chrono::duration<double> missing = std::chrono::steady_clock::now() - stopped;
    std::printf("  the others are heard again after %.1f s\n", missing.count());
    others[many / 3]->signal(SIGCONT);
    EXPECT_TRUE(bed.waitFor([&] { return isHeardOf(many); }));
}

TEST(Hang, withAServerThatDoesNotTellWhoHangsTheOthersAreHeardAgainAsWell)
{
    MixBed bed({.configuration = {.profiler = false}});
    const auto other = playApplication(
        bed.session(),
        {.nodeName = "other", .applicationName = "Other", .channels = {"FL=tone:601:0.3", "FR=tone:601:0.3"}});
    bed.run();
    ASSERT_THAT(runToEnd({"pw-cli", "list-objects"}), testing::Not(testing::HasSubstr("Profiler")));
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, applicationTone, 0.2));

    bed.player()->signal(SIGSTOP);
    ASSERT_TRUE(becomesHeard(bed, recorder, applicationTone, 0));
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));
    EXPECT_TRUE(becomesHeard(bed, recorder, 601, 0.3));
    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(becomesHeard(bed, recorder, applicationTone, 0.2));
}

TEST(Hang, aMicrophoneAndAnApplicationThatStopAtOnceDoNotSilenceTheOthers)
{
    MixBed bed({.microphone = false});
    const auto microphone = startMicrophone(bed.session(), 48000, {"MONO=tone:997:0.25"});
    const auto other = playApplication(
        bed.session(),
        {.nodeName = "other", .applicationName = "Other", .channels = {"FL=tone:601:0.3", "FR=tone:601:0.3"}});
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));

    microphone->signal(SIGSTOP);
    bed.player()->signal(SIGSTOP);
    EXPECT_TRUE(becomesHeard(bed, recorder, 601, 0.3));
    EXPECT_LT(heardAmplitude(bed, recorder, microphoneTone), 0.001);

    microphone->signal(SIGCONT);
    bed.player()->signal(SIGCONT);
    EXPECT_TRUE(becomesHeard(bed, recorder, microphoneTone, 0.25));
    EXPECT_TRUE(becomesHeard(bed, recorder, applicationTone, 0.2));
}

} // namespace tolvenary::session
