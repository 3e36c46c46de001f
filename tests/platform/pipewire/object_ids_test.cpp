#include "platform/pipewire/object_ids.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

TEST(ObjectIds, theSameKeyKeepsItsNumber)
{
    ObjectIds ids;
    const AudioObjectID first = ids.idOf("device a");
    EXPECT_NE(ids.idOf("device b"), first);
    EXPECT_EQ(ids.idOf("device a"), first);
    EXPECT_EQ(ids.keyOf(first), "device a");
}

TEST(ObjectIds, noNumberIsGivenTwice)
{
    ObjectIds ids;
    const AudioObjectID made = ids.make();
    EXPECT_NE(made, kAudioObjectUnknown);
    EXPECT_NE(made, kAudioObjectSystemObject);
    EXPECT_NE(ids.idOf("device a"), made);
    EXPECT_NE(ids.make(), ids.idOf("device a"));
}

TEST(ObjectIds, aNumberThatWasNeverGivenHasNoKey)
{
    const ObjectIds ids;
    EXPECT_EQ(ids.keyOf(77), std::nullopt);
}

} // namespace
} // namespace tolvenary
