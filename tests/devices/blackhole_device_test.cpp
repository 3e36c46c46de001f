#include "devices/blackhole_device.h"

#include <gtest/gtest.h>

#include <unordered_set>

using namespace tolvenary;

namespace
{

const BlackHoleDevice device{60, "BlackHole 2ch", "blackhole.2ch"};

} // namespace

TEST(BlackHoleDevice, devicesAreEqualOnlyWhenAllThreeFieldsAre)
{
    EXPECT_EQ(device, (BlackHoleDevice{60, "BlackHole 2ch", "blackhole.2ch"}));
    EXPECT_NE(device, (BlackHoleDevice{61, "BlackHole 2ch", "blackhole.2ch"}));
    EXPECT_NE(device, (BlackHoleDevice{60, "BlackHole 16ch", "blackhole.2ch"}));
    EXPECT_NE(device, (BlackHoleDevice{60, "BlackHole 2ch", ""}));
}

TEST(BlackHoleDevice, equalDevicesHashAlikeAndEachFieldCounts)
{
    const std::hash<BlackHoleDevice> hash;
    EXPECT_EQ(hash(device), hash(BlackHoleDevice{60, "BlackHole 2ch", "blackhole.2ch"}));
    EXPECT_NE(hash(device), hash(BlackHoleDevice{61, "BlackHole 2ch", "blackhole.2ch"}));
    EXPECT_NE(hash(device), hash(BlackHoleDevice{60, "BlackHole 16ch", "blackhole.2ch"}));
    EXPECT_NE(hash(device), hash(BlackHoleDevice{60, "BlackHole 2ch", ""}));
    EXPECT_NE(hash(device), hash(BlackHoleDevice{60, "blackhole.2ch", "BlackHole 2ch"}));
}

TEST(BlackHoleDevice, itCanBeAKeyOfASet)
{
    const std::unordered_set<BlackHoleDevice> devices{device, device, {61, "BlackHole 2ch", "blackhole.2ch"}};
    EXPECT_EQ(devices.size(), 2U);
}
