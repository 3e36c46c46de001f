#include "tests/session/mix_bed.h"
#include "tests/session/own_player.h"
#include "tests/session/support/tone_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

/// A bed whose microphone is silent: what the device plays comes from applications.
MixBedOptions quietMicrophone(bool application = true)
{
    return {.voice = {"MONO=silence"}, .application = application};
}

/// Every tone that a test here plays, so that each is measured beside all others.
const std::vector<double> allTones = {100, 500, 700, 900, 1100, 1300, 1499};

struct Expected {
    double frequency;
    double left;
    double right;
};

bool isAmplitude(double heard, double wanted, double frequency, const char *side)
{
    if (heard > 1e-5 || wanted > 0)
        std::printf("  %4.0f Hz %-5s: %.5f (want %.5f)\n", frequency, side, heard, wanted);
    constexpr double tenthOfADecibel = 0.0116;
    return std::abs(heard - wanted) <= wanted * tenthOfADecibel + 1e-5;
}

bool areAmplitudes(const Recording &recording, const std::vector<Expected> &expected)
{
    const Stretch whole = recording.longestUnbroken();
    const auto left = toneAmplitudes(recording.part(0, whole), recording.rate, allTones);
    const auto right = toneAmplitudes(recording.part(1, whole), recording.rate, allTones);
    bool areAll = true;
    for (std::size_t i = 0; i < allTones.size(); ++i) {
        Expected wanted{allTones[i], 0, 0};
        for (const Expected &one : expected)
            wanted = one.frequency == allTones[i] ? one : wanted;
        areAll = isAmplitude(left[i], wanted.left, wanted.frequency, "left") && areAll;
        areAll = isAmplitude(right[i], wanted.right, wanted.frequency, "right") && areAll;
    }
    return areAll;
}

/// Listens to the device for half a second; each of these tones must be there, and no other. Again where a player was
/// woken too late, which leaves a gap in what it plays; a wrong level stays wrong.
void expectHeard(MixBed &bed, const std::vector<Expected> &expected)
{
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    bed.record(recorder, 9600);
    bool areHeard = false;
    for (int attempt = 0; attempt < 8 && !areHeard; ++attempt)
        areHeard = areAmplitudes(bed.record(recorder, 24000), expected);
    EXPECT_TRUE(areHeard);
}

} // namespace

TEST(Sources, anApplicationThatBeginsAfterStartIsHeard)
{
    MixBed bed(quietMicrophone());
    bed.run();
    const auto late =
        playApplication(bed.session(), {.nodeName = "late", .channels = {"FL=tone:700:0.3", "FR=silence"}});
    expectHeard(bed, {{700, 0.3, 0}, {1499, 0.2, 0.2}});
}

TEST(Sources, anApplicationThatStopsAndStartsAgainIsHeardAgain)
{
    MixBed bed(quietMicrophone());
    bed.run();
    bed.player().reset();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("player") == nullptr; }));
    expectHeard(bed, {});
    bed.player() = playApplication(bed.session());
    expectHeard(bed, {{1499, 0.2, 0.2}});
}

TEST(Sources, aMonoClientReachesBothSidesAtFullLevel)
{
    MixBedOptions options = quietMicrophone();
    options.player.channels = {"MONO=tone:700:0.3"};
    MixBed bed(options);
    bed.run();
    expectHeard(bed, {{700, 0.3, 0.3}});
}

TEST(Sources, aMonoClientOnMonoSpeakersReachesBothSidesAtFullLevel)
{
    MixBedOptions options = quietMicrophone();
    options.configuration.speakers = "MONO";
    options.player.channels = {"MONO=tone:700:0.3"};
    MixBed bed(options);
    bed.run();
    ASSERT_NE(SoundGraph::read().port("player:output_MONO"), nullptr);
    expectHeard(bed, {{700, 0.3, 0.3}});
}

/// On stereo speakers the server folds a surround client down before we hear it; on surround speakers we do.
class Surround : public testing::TestWithParam<const char *>
{
};

TEST_P(Surround, eachChannelIsHeardWhereItBelongs)
{
    MixBedOptions options = quietMicrophone();
    options.configuration.speakers = GetParam();
    options.player.channels = {"FL=tone:500:0.2", "FR=tone:700:0.2",  "FC=tone:900:0.2",
                               "LFE=silence",     "RL=tone:1100:0.2", "RR=tone:1300:0.2"};
    MixBed bed(options);
    bed.run();
    const double threeDecibelDown = 0.2 / std::sqrt(2.0);
    expectHeard(bed, {{500, 0.2, 0},
                      {700, 0, 0.2},
                      {900, threeDecibelDown, threeDecibelDown},
                      {1100, threeDecibelDown, 0},
                      {1300, 0, threeDecibelDown}});
}

INSTANTIATE_TEST_SUITE_P(Speakers, Surround, testing::Values("FL FR", "FL FR FC LFE RL RR"),
                         [](const auto &speakers) { return speakers.index == 0 ? "stereo" : "surround"; });

TEST(Sources, aPulseClientIsHeard)
{
    MixBedOptions options = quietMicrophone();
    options.configuration.pulse = true;
    MixBed bed(options);
    bed.run();
    const auto client = playPulseClient(bed.session(), {"tone:700:0.3", "tone:900:0.1"});
    expectHeard(bed, {{700, 0.3, 0}, {900, 0, 0.1}, {1499, 0.2, 0.2}});
}

TEST(Sources, twoApplicationsAreSummed)
{
    MixBed bed(quietMicrophone());
    bed.run();
    const auto other =
        playApplication(bed.session(), {.nodeName = "other", .channels = {"FL=tone:500:0.1", "FR=tone:700:0.3"}});
    expectHeard(bed, {{500, 0.1, 0}, {700, 0, 0.3}, {1499, 0.2, 0.2}});
}

TEST(Sources, aStereoMicrophoneKeepsItsSides)
{
    MixBed bed({.microphoneChannels = "FL FR", .voice = {"FL=tone:500:0.3", "FR=tone:900:0.1"}});
    bed.run();
    expectHeard(bed, {{500, 0.3, 0}, {900, 0, 0.1}, {1499, 0.2, 0.2}});
}

TEST(Sources, ofAMicrophoneArrayTheFirstTwoAreTaken)
{
    MixBed bed({.microphoneChannels = "FL FR FC LFE SL SR",
                .voice = {"FL=tone:500:0.3", "FR=tone:900:0.1", "SL=tone:1100:0.3"}});
    bed.run();
    expectHeard(bed, {{500, 0.3, 0}, {900, 0, 0.1}, {1499, 0.2, 0.2}});
}

TEST(Sources, whatThisProcessPlaysIsNeverCaptured)
{
    MixBed bed(quietMicrophone());
    bed.run();
    const OwnPlayer own({"FL=tone:700:0.3", "FR=tone:700:0.3"});
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        const GraphPort *port = graph.port("own-player:output_FL");
        return port != nullptr && std::any_of(graph.links.begin(), graph.links.end(),
                                              [&](const GraphLink &link) { return link.outputPort == port->id; });
    }));
    {
        Recorder speakers(bed.session(), {"speakers:monitor_FL"});
        bed.record(speakers, 9600);
        const Recording aloud = bed.record(speakers, 24000);
        const auto levels = toneAmplitudes(aloud.part(0, aloud.longestUnbroken()), aloud.rate, allTones);
        EXPECT_NEAR(levels[2], 0.3, 0.003) << "what is not played cannot be captured";
    }
    expectHeard(bed, {{1499, 0.2, 0.2}});
}

} // namespace tolvenary::session
