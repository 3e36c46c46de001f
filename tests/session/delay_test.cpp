#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"

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
        for (const long delay : clickDelays(played, heard, 2400))
            ++counts[delay];
    }
    return counts;
}

void print(const char *what, const Recording &recording, const std::map<long, int> &counts)
{
    std::printf("  %s, quantum %u, %zu jumps of the clock:", what, recording.cycles.back().frames, recording.jumps());
    for (const auto &[delay, count] : counts)
        std::printf(" %ld frames late (%d clicks)", delay, count);
    std::printf("\n");
}

bool areAllAtOnce(const std::map<long, int> &counts)
{
    return counts.size() == 1 && counts.begin()->first == 0 && counts.begin()->second >= 10;
}

/// Every click is 0 frames late. A late wake-up of the machine delays the sound until the players have skipped what it
/// left behind: where the clock jumped it is listened to again, and where it did not, nothing excuses us.
void expectNoDelay(const char *what, MixBed &bed, Recorder &recorder, std::size_t source, std::size_t device)
{
    std::map<long, int> counts;
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = bed.record(recorder, 84000);
        counts = delays(recording, source, device);
        print(what, recording, counts);
        if (areAllAtOnce(counts) || recording.jumps() == 0)
            break;
    }
    EXPECT_TRUE(areAllAtOnce(counts)) << what;
}

} // namespace

/// Kind of device, and frames a cycle.
class Delay : public testing::TestWithParam<std::tuple<DeviceKind, int>>
{
};

TEST_P(Delay, isZeroFromMicrophoneAndApplicationToTheDevice)
{
    const auto [kind, quantum] = GetParam();
    MixBedOptions options{.deviceKind = kind};
    options.configuration.quantum = quantum;
    options.voice = {"MONO=clicks:4801:0.5"};
    options.player.channels = {"FL=silence", "FR=clicks:6007:0.5"};
    MixBed bed(options);
    bed.session().set("clock.force-quantum", std::to_string(quantum));
    bed.run();
    bed.mix().setProperty("appGain", 0.0F);
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FR"), bed.monitor("FR")});
    bed.record(recorder, 9600);
    expectNoDelay("microphone ", bed, recorder, 0, 2);
    bed.mix().setProperty("appGain", 1.0F);
    bed.mix().setProperty("micGain", 0.0F);
    bed.record(recorder, 9600);
    expectNoDelay("application", bed, recorder, 1, 2);
}

INSTANTIATE_TEST_SUITE_P(Quanta, Delay,
                         testing::Combine(testing::Values(DeviceKind::nullSink, DeviceKind::pair),
                                          testing::Values(64, 256, 1024)),
                         [](const auto &info) {
                             const bool isPair = std::get<0>(info.param) == DeviceKind::pair;
                             return (isPair ? "pair" : "nullSink") + std::to_string(std::get<1>(info.param));
                         });

} // namespace tolvenary::session
