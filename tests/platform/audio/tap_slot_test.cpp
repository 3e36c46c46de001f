#include "platform/audio/tap_slot.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

TEST(TapSlot, withoutATapABlockGoesNowhere)
{
    TapSlot slot;
    const Samples samples(4);
    slot.deliver({}, samples.constBlock());
    slot.remove();
}

TEST(TapSlot, theTapSeesTheSamplesThemselvesAndTheirTime)
{
    TapSlot slot;
    Samples samples(4);
    const float *seen = nullptr;
    std::uint64_t time = 0;
    slot.install(standardFormat(), [&](const AVAudioPCMBuffer &buffer, const AudioTimeStamp &when) {
        seen = buffer.floatChannel(1);
        time = when.mSampleTime;
        EXPECT_EQ(buffer.frameLength(), 4U);
        EXPECT_EQ(buffer.format(), standardFormat());
    });
    slot.deliver({.mSampleTime = 77}, samples.constBlock());
    EXPECT_EQ(seen, samples[1].data());
    EXPECT_EQ(time, 77U);
}

TEST(TapSlot, aSecondTapReplacesTheFirst)
{
    TapSlot slot;
    int first = 0;
    int second = 0;
    slot.install(standardFormat(), [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++first; });
    slot.install(standardFormat(), [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++second; });
    const Samples samples(4);
    slot.deliver({}, samples.constBlock());
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(TapSlot, aBlockWithTooFewChannelsIsPassedOver)
{
    TapSlot slot;
    int calls = 0;
    slot.install(standardFormat(48000, 2), [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++calls; });
    const Samples mono(4, 1);
    slot.deliver({}, mono.constBlock());
    EXPECT_EQ(calls, 0);
}

TEST(TapSlot, aFormatOfTooManyChannelsInstallsNoneAndTakesTheOldOneAway)
{
    TapSlot slot;
    int calls = 0;
    const auto count = [&](const AVAudioPCMBuffer &, const AudioTimeStamp &) { ++calls; };
    slot.install(standardFormat(), count);
    slot.install(standardFormat(48000, AVAudioPCMBuffer::maxBuffers + 1), count);
    const Samples samples(4, AVAudioPCMBuffer::maxBuffers + 1);
    slot.deliver({}, samples.constBlock());
    EXPECT_EQ(calls, 0);
}

// What the block refers to is destroyed right after remove(): a late call would be seen by the sanitizers, and here.
TEST(TapSlot, afterRemoveTheBlockIsNotRunningAndIsNotCalledAgain)
{
    TapSlot slot;
    const Samples samples(4);
    std::atomic<bool> finished{false};
    std::atomic<std::uint64_t> late{0};
    std::atomic<std::uint64_t> calls{0};
    const std::jthread capturing([&] {
        while (!finished)
            slot.deliver({}, samples.constBlock());
    });
    for (int round = 0; round < 300; ++round) {
        std::atomic<bool> installed{true};
        const std::uint64_t before = calls;
        auto owned = std::make_unique<std::uint64_t>(0);
        slot.install(standardFormat(), [&, raw = owned.get()](const AVAudioPCMBuffer &, const AudioTimeStamp &) {
            ++*raw;
            late += installed ? 0 : 1;
            ++calls;
        });
        while (calls == before)
            std::this_thread::yield();
        slot.remove();
        installed = false;
        owned.reset();
    }
    finished = true;
    EXPECT_EQ(late, 0U);
    EXPECT_GE(calls, 300U);
}
