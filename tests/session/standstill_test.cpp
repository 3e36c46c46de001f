#include "tests/session/listening.h"
#include "tests/session/support/clicks.h"

#include <QElapsedTimer>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>

namespace tolvenary::session
{

namespace
{

/// "frames late: how often" of all clicks of one track that are in another.
std::map<long, int> delays(const Recording &recording, std::size_t source, std::size_t device)
{
    std::map<long, int> counts;
    for (const Stretch stretch : recording.unbroken()) {
        const auto played = findClicks(recording.part(source, stretch), 0.2F);
        const auto heard = findClicks(recording.part(device, stretch), 0.2F);
        for (const long delay : clickDelays(played, heard, 9600))
            ++counts[delay];
    }
    return counts;
}

std::size_t clicksIn(const Recording &recording, std::size_t track)
{
    return findClicks(recording.tracks[track], 0.2F).size();
}

/// Every click that is heard is 0 frames late, and ten of them at least. What a late wake-up of the machine left behind
/// is skipped after a while: where the clock jumped it is listened to again.
bool areAtOnce(MixBed &bed, Recorder &recorder, std::size_t source)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = bed.record(recorder, 84000);
        const auto counts = delays(recording, source, 2);
        for (const auto &[delay, count] : counts)
            std::printf("  track %zu: %ld frames late (%d clicks)\n", source, delay, count);
        if (counts.size() == 1 && counts.begin()->first == 0 && counts.begin()->second >= 10)
            return true;
        if (recording.jumps() == 0)
            return false;
    }
    return false;
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
    ASSERT_TRUE(areAtOnce(bed, recorder, 0));
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
    EXPECT_LE(clicksIn(across, 2), played) << "nothing is heard that was not played";

    EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
    bed.mix().setAppGain(0);
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(bed, recorder, 0)) << "the microphone";
    bed.mix().setAppGain(1);
    bed.mix().setMicGain(0);
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(bed, recorder, 1)) << "the application";
    EXPECT_TRUE(bed.isRunning());
}

} // namespace tolvenary::session
