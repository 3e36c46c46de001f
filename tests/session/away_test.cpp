#include "tests/session/listening.h"

#include <gtest/gtest.h>
#include <span>

namespace tolvenary::session
{

namespace
{

const std::string isRunning = "Running → BlackHole 2ch";
const std::string noDevice = "BlackHole device not found.";
const std::string noMicrophone = "No microphone input available. Set the system default input to your mic.";

bool defaultSourceBecomes(MixBed &bed, const std::string &name)
{
    return bed.waitForGraph([&](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == name; });
}

/// The end of the first tenth of a second in which the microphone is heard at its level.
std::size_t heardAfter(const Recording &recording, std::size_t track)
{
    constexpr std::size_t tenth = 4800;
    const std::span<const float> samples(recording.tracks[track]);
    for (std::size_t end = tenth; end <= samples.size(); end += tenth) {
        const auto part = samples.subspan(end - tenth, tenth);
        if (isLevel(heardIn(Samples(part.begin(), part.end()), recording.rate).microphone, theWholeMix.microphone))
            return end;
    }
    return samples.size();
}

double loudestMicrophone(const Recording &recording, std::size_t track)
{
    double loudest = 0;
    for (const Stretch stretch : recording.unbroken()) {
        if (stretch.length() > 4800)
            loudest = std::max(loudest, heardIn(recording.part(track, stretch), recording.rate).microphone);
    }
    return loudest;
}

} // namespace

TEST(Away, theDeviceIsMissedAndFedAgainWithinASecondAndNobodyElseMeanwhile)
{
    MixBed bed;
    const auto other = makeBlackHole(bed.session(), DeviceKind::pair, "BlackHole 16ch", "other_blackhole");
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL"), "speakers:monitor_FL", "other_blackhole.source:capture_FL"});
    const auto expectNobodyElse = [](const Recording &recording) {
        EXPECT_LT(loudestMicrophone(recording, 1), 1e-4) << "in the speakers";
        EXPECT_LT(loudestMicrophone(recording, 2), 1e-4) << "in another device of that name";
    };
    for (int round = 0; round < 2; ++round) {
        recorder.begin(48000);
        bed.device()->remove();
        EXPECT_TRUE(statusBecomes(bed, noDevice)) << bed.status();
        EXPECT_TRUE(bed.isRunning());
        expectNobodyElse(recorder.finish());

        bed.device() = makeBlackHole(bed.session());
        recorder.begin(96000);
        recorder.connect(0, bed.monitor("FL"));
        const Recording back = recorder.finish();
        const std::size_t after = heardAfter(back, 0);
        std::printf("  heard again within %zu ms\n", after / 48);
        EXPECT_LE(after, 48000U);
        expectNobodyElse(back);
        EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
    }
}

TEST(Away, anUnpluggedMicrophoneIsReplacedByTheNextAndFollowedWhenItReturns)
{
    MixBed bed;
    bed.session().chooseDefault("default.configured.audio.source", "microphone");
    const auto other = makeMicrophone(bed.session(), "FL FR", "other-microphone");
    const auto otherVoice = speakInto(bed.session(), "other-microphone", {"FL=tone:600:0.3", "FR=tone:600:0.3"});
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    for (int round = 0; round < 2; ++round) {
        bed.voice().reset();
        bed.microphone()->remove();
        ASSERT_TRUE(defaultSourceBecomes(bed, "other-microphone"));
        EXPECT_TRUE(becomesHeard(bed, recorder, {0, 0.3, 0.2}));
        EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
        bed.microphone() = makeMicrophone(bed.session());
        bed.voice() = speakInto(bed.session(), "microphone", {"MONO=tone:997:0.25"});
        ASSERT_TRUE(defaultSourceBecomes(bed, "microphone"));
        EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    }
}

TEST(Away, theLastMicrophoneIsMissedAndHeardWhenItReturns)
{
    MixBed bed;
    bed.run();
    bed.voice().reset();
    bed.microphone()->remove();
    EXPECT_TRUE(statusBecomes(bed, noMicrophone)) << bed.status();
    EXPECT_TRUE(bed.isRunning());
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(bed, recorder, {0, 0, 0.2}));
    bed.microphone() = makeMicrophone(bed.session());
    bed.voice() = speakInto(bed.session(), "microphone", {"MONO=tone:997:0.25"});
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
}

TEST(Away, aDefaultSourceThatIsTheDeviceItselfIsNamedAndNotMixedIn)
{
    MixBed bed;
    bed.run();
    bed.session().chooseDefault("default.configured.audio.source", "blackhole_2ch.source");
    ASSERT_TRUE(defaultSourceBecomes(bed, "blackhole_2ch.source"));
    EXPECT_TRUE(statusBecomes(bed, noMicrophone)) << bed.status();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(bed, recorder, {0, 0, 0.2}));
    bed.record(recorder, 48000);
    EXPECT_NEAR(listen(bed, recorder).application, 0.2, 0.003) << "a mix that hears itself would grow";
    bed.session().chooseDefault("default.configured.audio.source", "microphone");
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(bed, isRunning)) << bed.status();
}

} // namespace tolvenary::session
