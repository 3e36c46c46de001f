#include "tests/session/click_delays.h"
#include "tests/session/listening.h"

#include <QElapsedTimer>
#include <cstdlib>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

std::size_t clicksIn(const Recording &recording, std::size_t track)
{
    return findClicks(recording.tracks[track], 0.2F).size();
}

void letTimePass(MixBed &bed, std::chrono::milliseconds time)
{
    QElapsedTimer clock;
    clock.start();
    bed.waitFor([&] { return clock.elapsed() >= time.count(); }, 2 * time);
}

std::chrono::seconds lengthOfTheStandstill()
{
    return std::chrono::seconds(std::getenv("TOLVENARY_LONG_TESTS") != nullptr ? 30 : 2);
}

} // namespace

/// Two clicking sources, each in its own time: what is played late stands beside its own click.
TEST(Standstill, ofTheServerIsToldAndAfterItTheMixGoesOnWithNeitherOldSoundNorDelay)
{
    MixBedOptions options{.voice = {"MONO=clicks:4801:0.5"}};
    options.player.channels = {"FL=silence", "FR=clicks:6007:0.5"};
    MixBed bed(options);
    bed.run();
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FR"), bed.monitor("FR")});
    bed.mix().setAppGain(0);
    ASSERT_TRUE(areAtOnce(listenToClicks("microphone", bed, recorder, {0, 2, 9600})));
    bed.mix().setAppGain(1);

    recorder.begin(96000);
    bed.session().hangServer();
    EXPECT_TRUE(statusBecomes(bed, "The sound server does not answer.")) << bed.status();
    letTimePass(bed, lengthOfTheStandstill());
    EXPECT_TRUE(bed.isRunning());
    bed.session().resumeServer();
    const Recording across = recorder.finish();
    const std::size_t played = clicksIn(across, 0) + clicksIn(across, 1);
    std::printf("  across: %zu clicks played, %zu heard, %zu jumps of the clock\n", played, clicksIn(across, 2),
                across.jumps());
    EXPECT_GT(clicksIn(across, 2), 0U) << "silence";
    EXPECT_LE(clicksIn(across, 2), played) << "nothing is heard that was not played";

    EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
    bed.mix().setAppGain(0);
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(listenToClicks("microphone", bed, recorder, {0, 2, 9600})));
    bed.mix().setAppGain(1);
    bed.mix().setMicGain(0);
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(listenToClicks("application", bed, recorder, {1, 2, 9600})));
    EXPECT_TRUE(bed.isRunning());
}

} // namespace tolvenary::session
