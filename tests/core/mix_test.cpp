#include "tests/core/coordinator_fixture.h"
#include "tests/platform/audio/allocation_counter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Each;
using testing::FloatNear;

namespace
{

class MixTest : public CoordinatorTest
{
  protected:
    /// One cycle of the graph: both captures, then the output.
    std::vector<float> cycle(float mic, float app, std::uint32_t frames)
    {
        EXPECT_TRUE(inputCycle(mic, frames));
        EXPECT_TRUE(tapCycle(app, frames));
        return outputCycle(frames);
    }
};

} // namespace

TEST_F(MixTest, bothSourcesAreInTheSameCyclesOutputEachAtItsGain)
{
    pickAllAndStart();
    const float gains[] = {0, 0.35F, 1, 2};
    for (const std::uint32_t frames : {1U, 64U, 128U, 513U, 1024U, 8192U}) {
        for (const float micGain : gains) {
            for (const float appGain : gains) {
                coordinator().setMicGain(micGain);
                coordinator().setAppGain(appGain);
                cycle(0.25F, 0.5F, frames); // in the course of which the gains are reached
                EXPECT_THAT(cycle(0.25F, 0.5F, frames), Each(FloatNear(0.25F * micGain + 0.5F * appGain, 1e-6F)));
            }
        }
    }
}

TEST_F(MixTest, theSumIsNeitherClippedNorLimited)
{
    coordinator().setMicGain(2);
    coordinator().setAppGain(2);
    pickAllAndStart();
    EXPECT_THAT(cycle(0.9F, 0.8F, 64), Each(FloatNear(3.4F, 1e-5F)));
}

TEST_F(MixTest, gainsSetBeforeTheStartHoldFromItsFirstFrame)
{
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(2);
    pickAllAndStart();
    EXPECT_THAT(cycle(0.25F, 0.25F, 64), Each(0.625F));
}

TEST_F(MixTest, aGainMovedDuringTheRunIsReachedInAStraightLineOverOneCycle)
{
    pickAllAndStart();
    cycle(0.25F, 0, 100);
    coordinator().setMicGain(2);
    const auto ramp = cycle(0.25F, 0, 100);
    EXPECT_TRUE(std::is_sorted(ramp.begin(), ramp.end()));
    EXPECT_GE(ramp.front(), 0.25F);
    EXPECT_LE(ramp.back(), 0.5F);
    for (std::size_t i = 1; i < ramp.size(); ++i)
        EXPECT_NEAR(ramp[i] - ramp[i - 1], 0.25F / 100, 1e-5F);
    EXPECT_THAT(cycle(0.25F, 0, 100), Each(0.5F));
}

TEST_F(MixTest, aSourceThatPausesIsHeardAgainInTheCycleInWhichItComesBack)
{
    pickAllAndStart();
    cycle(0.25F, 0.5F, 64);
    inputCycle(0.25F, 64);
    EXPECT_THAT(outputCycle(64), Each(0.25F));
    EXPECT_THAT(cycle(0.25F, 0.5F, 64), Each(0.75F));
}

TEST_F(MixTest, aSecondRunStartsWithoutWhatTheFirstLeftInItsPlayers)
{
    pickAllAndStart();
    inputCycle(0.25F, 64); // never played
    coordinator().teardown();
    start();
    EXPECT_THAT(outputCycle(64), Each(0.0F));
    EXPECT_THAT(cycle(0.125F, 0.5F, 64), Each(0.625F));
}

TEST_F(MixTest, aHundredRunsLeaveNothingBehind)
{
    pickAll();
    for (int i = 0; i < 100; ++i) {
        start();
        ASSERT_TRUE(coordinator().isRunning());
        ASSERT_THAT(cycle(0.25F, 0.5F, 64), Each(0.75F));
        inputCycle(0.25F, 64);
        tapCycle(0.25F, 64);
        coordinator().teardown();
        ASSERT_FALSE(m_platform.holdsAnything());
    }
}

TEST_F(MixTest, aCycleNeverTouchesTheHeap)
{
    pickAllAndStart();
    std::vector<float> samples(256, 0.25F);
    std::vector<float> left(256);
    std::vector<float> right(256);
    const float *const inputs[] = {samples.data(), samples.data()};
    float *const outputs[] = {left.data(), right.data()};
    const std::vector<AudioBuffer> tapped(2, AudioBuffer{1, 1024, samples.data()});
    const auto run = [&] {
        m_platform.audioUnits().inputCycle({inputs, 256});
        m_platform.ioProcs().cycle(tapped);
        m_platform.audioUnits().outputCycle({outputs, 256});
    };
    run();
    const AllocationCounter counter;
    for (int i = 0; i < 100; ++i)
        run();
    EXPECT_EQ(counter.allocations(), 0U);
    EXPECT_EQ(counter.frees(), 0U);
    EXPECT_THAT(left, Each(0.5F));
}
