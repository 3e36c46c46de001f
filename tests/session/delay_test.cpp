#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "tests/session/click_delays.h"

#include <cmath>
#include <deque>
#include <gtest/gtest.h>
#include <utility>

namespace tolvenary::session
{

namespace
{

/// Frames of the graph by which a click comes out of two converters, to the mix's rate and back, later than it went in,
/// with that many frames of the mix waiting between them.
long delayOfConverters(double graphRate, std::size_t cushion)
{
    constexpr std::uint32_t quantum = 1024;
    const AVAudioFormat graph = *AVAudioFormat::standardFormat(graphRate, 2);
    const AVAudioFormat mix = *AVAudioFormat::standardFormat(48000, 2);
    const auto in = AVAudioConverter::make(graph, mix);
    const auto back = AVAudioConverter::make(mix, graph);
    AVAudioPCMBufferPool pool(4, std::size_t{quantum} * 64);
    const auto captured = pool.make(graph, quantum);
    const auto converted = pool.make(mix, quantum * 2);
    const auto pulled = pool.make(mix, quantum * 4);
    const auto played = pool.make(graph, quantum);
    std::deque<float> waiting(cushion, 0.0F);
    Samples heard;
    for (int cycle = 0; cycle < 8; ++cycle) {
        captured->setFrameLength(quantum);
        std::fill_n(captured->floatChannel(0), quantum, 0.0F);
        captured->floatChannel(0)[0] = cycle == 4 ? 1.0F : 0.0F;
        bool isTaken = false;
        in->convertToBuffer(*converted, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
            status = isTaken ? AVAudioConverterInputStatus::noDataNow : AVAudioConverterInputStatus::haveData;
            return std::exchange(isTaken, true) ? nullptr : captured.get();
        });
        waiting.insert(waiting.end(), converted->floatChannel(0),
                       converted->floatChannel(0) + converted->frameLength());
        back->convertToBuffer(*played, nullptr, [&](std::uint32_t frames, AVAudioConverterInputStatus &status) {
            status = AVAudioConverterInputStatus::haveData;
            pulled->setFrameLength(frames);
            waiting.resize(std::max<std::size_t>(waiting.size(), frames));
            std::copy_n(waiting.begin(), frames, pulled->floatChannel(0));
            waiting.erase(waiting.begin(), waiting.begin() + frames);
            return pulled.get();
        });
        heard.insert(heard.end(), played->floatChannel(0), played->floatChannel(0) + played->frameLength());
    }
    return std::ranges::max_element(heard) - heard.begin() - 4 * static_cast<long>(quantum);
}

/// Each source by itself, so that no click hides behind the other's.
void expectNoDelayOfEither(MixBed &bed)
{
    bed.mix().setProperty("appGain", 0.0F);
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FR"), bed.monitor("FR")});
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(listenToClicks("microphone ", bed, recorder, {0, 2})));
    bed.mix().setProperty("appGain", 1.0F);
    bed.mix().setProperty("micGain", 0.0F);
    bed.record(recorder, 9600);
    EXPECT_TRUE(areAtOnce(listenToClicks("application", bed, recorder, {1, 2})));
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
    expectNoDelayOfEither(bed);
}

INSTANTIATE_TEST_SUITE_P(Quanta, Delay,
                         testing::Combine(testing::Values(DeviceKind::nullSink, DeviceKind::pair),
                                          testing::Values(64, 256, 1024)),
                         [](const auto &info) {
                             const bool isPair = std::get<0>(info.param) == DeviceKind::pair;
                             return (isPair ? "pair" : "nullSink") + std::to_string(std::get<1>(info.param));
                         });

TEST(DelayOfMany, isZeroWhileThirtyTwoApplicationsPlay)
{
    MixBedOptions options{.voice = {"MONO=clicks:4801:0.5"}, .urgent = true};
    options.player.channels = {"FL=silence", "FR=clicks:6007:0.5"};
    MixBed bed(options);
    bed.run();
    const auto others = bed.playMany(31, {"FL=tone:700:0.001", "FR=tone:900:0.001"});
    expectNoDelayOfEither(bed);
}

/// Frames a second of the graph, none of them the mix's.
class DelayElsewhere : public testing::TestWithParam<int>
{
};

TEST_P(DelayElsewhere, isThatOfTheConvertersFilters)
{
    MixBedOptions options{.voice = {"MONO=clicks:9601:0.5"}, .urgent = true};
    options.configuration.rate = GetParam();
    options.player.rate = GetParam();
    options.player.channels = {"FL=silence", "FR=clicks:12007:0.5"};
    MixBed bed(options);
    bed.run();
    constexpr std::size_t cushion = 4; // for cycles that are a frame short
    const long wanted = delayOfConverters(GetParam(), cushion);
    Recorder recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FR"), bed.monitor("FR")});
    bed.record(recorder, 9600);
    const auto measure = [&](const char *what, std::size_t source) {
        const ClickDelays counts = listenToClicks(what, bed, recorder, {source, 2, 2400, 0.05F});
        ASSERT_FALSE(counts.empty());
        // What waits between the two filters are whole frames of the mix.
        const double mixFrame = std::ceil(GetParam() / 48000.0);
        for (const auto &[delay, count] : counts)
            EXPECT_NEAR(static_cast<double>(delay), static_cast<double>(wanted), mixFrame)
                << what << ", " << count << " times";
    };
    std::printf("  %d Hz: the converters' own delay, and %zu frames of cushion: %ld frames (%.2f ms)\n", GetParam(),
                cushion, wanted, 1000.0 * static_cast<double>(wanted) / GetParam());
    bed.mix().setProperty("appGain", 0.0F);
    bed.record(recorder, 9600);
    measure("microphone ", 0);
    bed.mix().setProperty("appGain", 1.0F);
    bed.mix().setProperty("micGain", 0.0F);
    bed.record(recorder, 9600);
    measure("application", 1);
}

INSTANTIATE_TEST_SUITE_P(Rates, DelayElsewhere, testing::Values(44100, 88200, 96000, 192000),
                         [](const auto &info) { return std::to_string(info.param); });

} // namespace tolvenary::session
