#include "platform/pipewire/object_ids.h"

#include <gtest/gtest.h>
#include <set>

namespace tolvenary
{
namespace
{

TEST(ObjectIds, aDeviceKeepsItsNumberByItsName)
{
    ObjectIds ids;
    const AudioObjectID first = ids.ofDevice("a");
    EXPECT_NE(ids.ofDevice("b"), first);
    EXPECT_EQ(ids.ofDevice("a"), first);
    EXPECT_EQ(ids.deviceName(first), "a");
}

TEST(ObjectIds, aClientKeepsItsNumberByItsSerial)
{
    ObjectIds ids;
    const AudioObjectID first = ids.ofClient(40);
    EXPECT_NE(ids.ofClient(41), first);
    EXPECT_EQ(ids.ofClient(40), first);
    EXPECT_EQ(ids.clientSerial(first), 40U);
}

TEST(ObjectIds, noNumberIsGivenTwice)
{
    ObjectIds ids;
    const std::set<AudioObjectID> given{kAudioObjectUnknown, kAudioObjectSystemObject, ids.make(),
                                        ids.ofDevice("40"),  ids.ofClient(40),         ids.make()};
    EXPECT_EQ(given.size(), 6U);
}

TEST(ObjectIds, aNumberOfAnotherKindOrOfNobodyNamesNothing)
{
    ObjectIds ids;
    const AudioObjectID device = ids.ofDevice("40");
    const AudioObjectID client = ids.ofClient(40);
    EXPECT_EQ(ids.clientSerial(device), std::nullopt);
    EXPECT_EQ(ids.deviceName(client), std::nullopt);
    EXPECT_EQ(ids.deviceName(77), std::nullopt);
    EXPECT_EQ(ids.clientSerial(77), std::nullopt);
}

} // namespace
} // namespace tolvenary
