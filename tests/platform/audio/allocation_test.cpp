#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/av_audio_sink_node.h"
#include "tests/platform/audio/allocation_counter.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

/// As a capture converts a block, without room for the test's own conveniences.
void convertOnce(AVAudioConverter &converter, const AVAudioPCMBuffer &block, AVAudioPCMBuffer &output)
{
    const AVAudioPCMBuffer *next = &block;
    converter.convertToBuffer(output, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
        status = next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
        return std::exchange(next, nullptr);
    });
}

struct Pair {
    AVAudioFormat from;
    AVAudioFormat to;
};

std::vector<Pair> conversions()
{
    return {{standardFormat(44100), standardFormat()},
            {standardFormat(), standardFormat(44100)},
            {standardFormat(96000), standardFormat()},
            {standardFormat(), standardFormat(192000)},
            {standardFormat(8000, 1), standardFormat()},
            {standardFormat(44100, 6), standardFormat()},
            {standardFormat(44100), standardFormat(47999)},
            {standardFormat(48000, 1), standardFormat()},
            {standardFormat(48000, 2), standardFormat()},
            {pcmFormat(44100, 2, 16, kAudioFormatFlagIsSignedInteger), standardFormat()}};
}

} // namespace

TEST(AllocationCounter, itSeesWhatTheProgramDoes)
{
    const AllocationCounter counter;
    void *volatile block = std::malloc(10); // volatile: or else it would be optimised away
    std::free(block);
    int *volatile number = new int;
    delete number;
    EXPECT_EQ(counter.allocations(), 2U);
    EXPECT_EQ(counter.frees(), 2U);
}

TEST(AllocationCounter, itSeesWhatTheResamplerDoes)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer does not tell of aligned allocations, and the resampler makes no others";
#endif
    AVAudioPCMBufferPool pool(2, 1 << 16);
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat(), 16);
    const auto block = makeBuffer(pool, std::vector<float>(4000, 0.0F), standardFormat(44100));
    const auto output = pool.make(standardFormat(), 5000);
    const AllocationCounter counter;
    convertOnce(*converter, *block, *output);
    EXPECT_GT(counter.allocations(), 4U)
        << "a longer block than any before: four for our room, the rest the resampler's";
}

TEST(Allocations, aConverterMakesNoneFromItsFirstBlockOnWhateverTheBlocks)
{
    for (const Pair &pair : conversions()) {
        for (const std::uint32_t longest : {64U, 1024U}) {
            const auto converter = AVAudioConverter::make(pair.from, pair.to, longest);
            AVAudioPCMBufferPool pool(2, 1 << 18);
            const auto room = static_cast<std::uint32_t>(pair.to.sampleRate() / pair.from.sampleRate() * longest + 32);
            const AllocationCounter counter;
            for (std::uint32_t i = 0; i < 3000; ++i) {
                const auto block = pool.make(pair.from, longest);
                block->setFrameLength(i < 500 ? longest : i * 7919 % (longest + 1));
                const auto output = pool.make(pair.to, room);
                for (const AudioBuffer &buffer : block->mutableAudioBufferList())
                    std::fill_n(static_cast<std::byte *>(buffer.mData), buffer.mDataByteSize, std::byte{0});
                convertOnce(*converter, *block, *output);
            }
            EXPECT_EQ(counter.allocations(), 0U) << pair.from.sampleRate() << " to " << pair.to.sampleRate();
            EXPECT_EQ(counter.frees(), 0U) << pair.from.sampleRate() << " to " << pair.to.sampleRate();
        }
    }
}

TEST(Allocations, anOutputCycleThroughPlayersMixersAndConverterMakesNone)
{
    for (const double rate : {48000.0, 44100.0, 96000.0}) {
        FakeUnits units;
        units.output.sampleRate = rate;
        AVAudioPCMBufferPool pool(64, 1 << 16);
        AVAudioPlayerNode player;
        AVAudioEngine engine(units);
        auto &output = engine.outputNode();
        engine.attachNode(player);
        const auto mixer = std::make_shared<AVAudioMixerNode>();
        auto &sum = engine.attachNode(std::make_shared<AVAudioMixerNode>());
        engine.connect(player, engine.attachNode(mixer), standardFormat());
        engine.connect(*mixer, sum, 0, 0, standardFormat());
        engine.connect(*mixer, sum, 0, 1, standardFormat());
        engine.connect(sum, output, standardFormat());
        ASSERT_TRUE(engine.startAndReturnError());
        player.play();
        Samples samples(1024);

        const AllocationCounter counter;
        for (int cycle = 0; cycle < 500; ++cycle) {
            // Now and then a block too many, a pause, a new volume: skips, cushions and ramps are all in it.
            for (int extra = 0; extra < (cycle % 100 == 0 ? 3 : 1) && cycle % 90 > 3; ++extra) {
                auto buffer = pool.make(standardFormat(), 1024);
                buffer->setFrameLength(1024);
                std::fill_n(buffer->floatChannel(0), 1024, 0.1F);
                std::fill_n(buffer->floatChannel(1), 1024, 0.1F);
                player.scheduleBuffer(std::move(buffer), {});
            }
            mixer->setOutputVolume(static_cast<float>(cycle % 7) * 0.3F);
            units.outputUnit->cycle(samples.block());
        }
        EXPECT_EQ(counter.allocations(), 0U) << rate;
        EXPECT_EQ(counter.frees(), 0U) << rate;
    }
}

TEST(Allocations, aCapturedBlockReachesTapAndSinkWithoutAny)
{
    FakeUnits units;
    AVAudioEngine engine(units);
    std::uint64_t frames = 0;
    engine.inputNode().installTapOnBus(
        0, 1024, standardFormat(),
        [&](const AVAudioPCMBuffer &buffer, const AudioTimeStamp &) { frames += buffer.frameLength(); });
    auto &sink = engine.attachNode(std::make_shared<AVAudioSinkNode>(
        [&](const AudioTimeStamp &, std::uint32_t, ConstPlanarBlock) -> OSStatus { return noErr; }));
    engine.connect(engine.inputNode(), sink, standardFormat());
    ASSERT_TRUE(engine.startAndReturnError());
    const Samples samples(256);
    {
        const AllocationCounter counter;
        for (int cycle = 0; cycle < 100; ++cycle)
            units.inputUnit->cycle({}, samples.constBlock());
        EXPECT_EQ(counter.allocations(), 0U);
        EXPECT_EQ(counter.frees(), 0U);
    }
    EXPECT_EQ(frames, 25600U);
}
