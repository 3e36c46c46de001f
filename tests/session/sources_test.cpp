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

struct Heard {
    double left;
    double right;
};

/// Amplitude of a tone in the device.
Heard hear(MixBed &bed, double frequency)
{
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    bed.record(recorder, 9600);
    const Recording recording = bed.record(recorder, 24000);
    const Stretch whole = recording.longestUnbroken();
    return {toneAmplitudes(recording.part(0, whole), recording.rate, {frequency}).front(),
            toneAmplitudes(recording.part(1, whole), recording.rate, {frequency}).front()};
}

void expectHeard(MixBed &bed, double frequency, double left, double right)
{
    const Heard heard = hear(bed, frequency);
    std::printf("  %.0f Hz: left %.4f (want %.4f), right %.4f (want %.4f)\n", frequency, heard.left, left, heard.right,
                right);
    constexpr double tenthOfADecibel = 0.0116;
    EXPECT_NEAR(heard.left, left, left * tenthOfADecibel + 1e-5) << frequency << " Hz, left";
    EXPECT_NEAR(heard.right, right, right * tenthOfADecibel + 1e-5) << frequency << " Hz, right";
}

} // namespace

TEST(Sources, anApplicationThatBeginsAfterStartIsHeard)
{
    MixBed bed(quietMicrophone());
    bed.run();
    const auto late =
        playApplication(bed.session(), {.nodeName = "late", .channels = {"FL=tone:700:0.3", "FR=silence"}});
    expectHeard(bed, 700, 0.3, 0);
    expectHeard(bed, 1499, 0.2, 0.2);
}

TEST(Sources, anApplicationThatStopsAndStartsAgainIsHeardAgain)
{
    MixBed bed(quietMicrophone());
    bed.run();
    bed.player().reset();
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.node("player") == nullptr; }));
    expectHeard(bed, 1499, 0, 0);
    bed.player() = playApplication(bed.session());
    expectHeard(bed, 1499, 0.2, 0.2);
}

TEST(Sources, aMonoClientReachesBothSidesAtFullLevel)
{
    MixBedOptions options = quietMicrophone();
    options.player.channels = {"MONO=tone:700:0.3"};
    MixBed bed(options);
    bed.run();
    expectHeard(bed, 700, 0.3, 0.3);
}

TEST(Sources, eachChannelOfASurroundClientIsHeardWhereItBelongs)
{
    MixBedOptions options = quietMicrophone();
    options.player.channels = {"FL=tone:500:0.2",  "FR=tone:700:0.2",  "FC=tone:900:0.2",
                               "LFE=tone:100:0.2", "RL=tone:1100:0.2", "RR=tone:1300:0.2"};
    MixBed bed(options);
    bed.run();
    const double threeDecibelDown = 0.2 / std::sqrt(2.0);
    expectHeard(bed, 500, 0.2, 0);
    expectHeard(bed, 700, 0, 0.2);
    expectHeard(bed, 900, threeDecibelDown, threeDecibelDown);
    expectHeard(bed, 1100, threeDecibelDown, 0);
    expectHeard(bed, 1300, 0, threeDecibelDown);
}

TEST(Sources, aPulseClientIsHeard)
{
    MixBedOptions options = quietMicrophone();
    options.configuration.pulse = true;
    MixBed bed(options);
    bed.run();
    const auto client = playPulseClient(bed.session(), {"tone:700:0.3", "tone:900:0.1"});
    expectHeard(bed, 700, 0.3, 0);
    expectHeard(bed, 900, 0, 0.1);
}

TEST(Sources, twoApplicationsAreSummed)
{
    MixBed bed(quietMicrophone());
    bed.run();
    const auto other =
        playApplication(bed.session(), {.nodeName = "other", .channels = {"FL=tone:1499:0.2", "FR=tone:700:0.3"}});
    expectHeard(bed, 700, 0, 0.3);
    EXPECT_NEAR(hear(bed, 1499).right, 0.2, 0.003);
}

TEST(Sources, aStereoMicrophoneKeepsItsSides)
{
    MixBed bed({.microphoneChannels = "FL FR", .voice = {"FL=tone:500:0.3", "FR=tone:900:0.1"}});
    bed.run();
    expectHeard(bed, 500, 0.3, 0);
    expectHeard(bed, 900, 0, 0.1);
}

TEST(Sources, ofAMicrophoneArrayTheFirstTwoAreTaken)
{
    MixBed bed({.microphoneChannels = "FL FR FC LFE SL SR",
                .voice = {"FL=tone:500:0.3", "FR=tone:900:0.1", "SL=tone:1100:0.3"}});
    bed.run();
    expectHeard(bed, 500, 0.3, 0);
    expectHeard(bed, 900, 0, 0.1);
    expectHeard(bed, 1100, 0, 0);
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
    Recorder speakers(bed.session(), {"speakers:monitor_FL"});
    bed.record(speakers, 9600);
    const Recording aloud = bed.record(speakers, 24000);
    EXPECT_NEAR(toneAmplitudes(aloud.part(0, aloud.longestUnbroken()), aloud.rate, {700.0}).front(), 0.3, 0.003)
        << "what is not played cannot be captured";
    expectHeard(bed, 700, 0, 0);
    expectHeard(bed, 1499, 0.2, 0.2);
}

} // namespace tolvenary::session
