#include "platform/pipewire/chunk_claim.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

constexpr std::uint32_t frames = 1024;
constexpr std::uint32_t cycle = frames * sizeof(float);
constexpr std::uint32_t capacity = 8 * cycle;
constexpr std::uint32_t most = 0xFFFFFFFF;

bool holds(std::uint32_t offset, std::uint32_t size)
{
    return holdsCycle({offset, size}, capacity, frames);
}

TEST(ChunkClaim, ofAWholeCycleHoldsWhereverItLies)
{
    EXPECT_TRUE(holds(0, cycle));
    EXPECT_TRUE(holds(4, cycle));
    EXPECT_TRUE(holds(0, capacity));
    EXPECT_TRUE(holds(capacity - cycle, cycle)) << "at the very end";
}

TEST(ChunkClaim, thatReachesBeyondTheBufferDoesNotHold)
{
    EXPECT_FALSE(holds(capacity - cycle + 4, cycle));
    EXPECT_FALSE(holds(capacity, cycle));
    EXPECT_FALSE(holds(capacity + 4, cycle)) << "what is left must not turn into billions";
    EXPECT_FALSE(holds(0x7FF00000, cycle));
    EXPECT_FALSE(holds(most - 3, most));
    EXPECT_FALSE(holdsCycle({0, most}, cycle - 4, frames)) << "a buffer shorter than a cycle";
    EXPECT_FALSE(holdsCycle({0, most}, 0, frames));
}

TEST(ChunkClaim, ofLessThanACycleDoesNotHold)
{
    EXPECT_FALSE(holds(0, 0));
    EXPECT_FALSE(holds(0, 4));
    EXPECT_FALSE(holds(0, cycle - 1));
}

TEST(ChunkClaim, ofWhatIsNoSampleDoesNotHold)
{
    EXPECT_FALSE(holds(1, cycle));
    EXPECT_FALSE(holds(2, cycle));
    EXPECT_FALSE(holdsCycle({0, cycle}, capacity, 0)) << "a cycle without frames";
}

TEST(ChunkClaim, isNotFooledByACycleOfMoreBytesThanThereAreNumbers)
{
    EXPECT_FALSE(holdsCycle({0, most}, most, 0x40000000)) << "four times that many bytes is 0 in 32 bits";
    EXPECT_FALSE(holdsCycle({0, most}, most, most));
}

} // namespace
} // namespace tolvenary
