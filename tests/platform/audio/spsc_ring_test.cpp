#include "platform/audio/spsc_ring.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <thread>

using tolvenary::SpscRing;

TEST(SpscRing, itemsComeOutInTheOrderInWhichTheyWentIn)
{
    SpscRing<int> ring(4);
    EXPECT_TRUE(ring.writer().push(1));
    EXPECT_TRUE(ring.writer().push(2));
    EXPECT_EQ(ring.reader().size(), 2U);
    EXPECT_EQ(ring.reader()[1], 2);
    EXPECT_EQ(ring.reader().pop(), 1);
    EXPECT_EQ(ring.reader().pop(), 2);
    EXPECT_EQ(ring.reader().size(), 0U);
}

TEST(SpscRing, aFullRingLeavesTheItemWithTheWriter)
{
    SpscRing<std::unique_ptr<int>> ring(2);
    EXPECT_TRUE(ring.writer().push(std::make_unique<int>(1)));
    EXPECT_TRUE(ring.writer().push(std::make_unique<int>(2)));
    auto third = std::make_unique<int>(3);
    EXPECT_FALSE(ring.writer().push(std::move(third)));
    ASSERT_NE(third, nullptr); // NOLINT(bugprone-use-after-move): that it was not moved is the point
    EXPECT_EQ(*third, 3);
    EXPECT_EQ(*ring.reader().pop(), 1);
    EXPECT_TRUE(ring.writer().push(std::move(third)));
}

TEST(SpscRing, aPoppedItemIsNotKeptAliveByTheRing)
{
    SpscRing<std::shared_ptr<int>> ring(2);
    auto item = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = item;
    ring.writer().push(std::move(item));
    ring.reader().pop();
    EXPECT_TRUE(watch.expired());
}

TEST(SpscRing, placesAreUsedAgainRoundAndRound)
{
    SpscRing<int> ring(3);
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(ring.writer().push(int{i}));
        ASSERT_EQ(ring.reader().pop(), i);
    }
}

// The payload carries its number sixteen times over, so that a half-written item would be seen.
TEST(SpscRing, twoThreadsExchangeEveryItemWholeAndInOrder)
{
    using Payload = std::array<std::uint64_t, 16>;
    constexpr std::uint64_t count = 200000;
    SpscRing<Payload> ring(8);
    const std::jthread writing([&] {
        for (std::uint64_t i = 1; i <= count;) {
            Payload payload;
            payload.fill(i);
            if (ring.writer().push(std::move(payload)))
                ++i;
            else
                std::this_thread::yield();
        }
    });
    for (std::uint64_t expected = 1; expected <= count;) {
        if (ring.reader().size() == 0) {
            std::this_thread::yield();
            continue;
        }
        Payload whole;
        whole.fill(expected);
        EXPECT_EQ(ring.reader()[0], whole);
        ASSERT_EQ(ring.reader().pop(), whole);
        ++expected;
    }
    EXPECT_EQ(ring.reader().size(), 0U);
}
