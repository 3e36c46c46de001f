#include "devices/blackhole_locator.h"

#include "platform/fake/fake_platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace tolvenary;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class BlackHoleLocatorTest : public testing::Test
{
  protected:
    std::vector<BlackHoleDevice> findAll() { return BlackHoleLocator::findAll(m_platform.audioObjectProperties()); }

    FakeDevice &add(AudioObjectID id, const std::string &name)
    {
        FakeDevice device;
        device.id = id;
        device.name = name;
        device.uid = "uid-" + std::to_string(id);
        return m_platform.objects().devices.emplace_back(std::move(device));
    }
    bool isFound(const std::string &name)
    {
        m_platform.objects().devices.clear();
        add(60, name);
        return findAll().size() == 1;
    }

    FakePlatform m_platform;
};

} // namespace

TEST_F(BlackHoleLocatorTest, withoutAnyDeviceNothingIsFound)
{
    EXPECT_THAT(findAll(), IsEmpty());
}

TEST_F(BlackHoleLocatorTest, aDeviceIsDescribedByItsObjectItsNameAndItsUID)
{
    add(60, "BlackHole 2ch");
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{60, "BlackHole 2ch", "uid-60"}));
}

TEST_F(BlackHoleLocatorTest, theNameMayContainTheWordInAnyCaseAndAnywhere)
{
    EXPECT_TRUE(isFound("BlackHole 2ch"));
    EXPECT_TRUE(isFound("BlackHole 16ch"));
    EXPECT_TRUE(isFound("BLACKHOLE 64ch"));
    EXPECT_TRUE(isFound("My blackhole"));
    EXPECT_TRUE(isFound("Überblackholegerät"));
    EXPECT_TRUE(isFound("BLAC\xE2\x84\xAAHOLE")) << "the Kelvin sign is a capital K";
}

TEST_F(BlackHoleLocatorTest, otherNamesAreNotFound)
{
    EXPECT_FALSE(isFound("Black Hole"));
    EXPECT_FALSE(isFound("BlackHol"));
    EXPECT_FALSE(isFound("Built-in Output"));
    EXPECT_FALSE(isFound(""));
}

TEST_F(BlackHoleLocatorTest, theOrderIsTheSystemsAndNothingIsLeftOutTwice)
{
    add(70, "BlackHole 16ch");
    add(50, "Speakers");
    add(60, "BlackHole 2ch");
    add(80, "BlackHole 2ch");
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{70, "BlackHole 16ch", "uid-70"},
                                       BlackHoleDevice{60, "BlackHole 2ch", "uid-60"},
                                       BlackHoleDevice{80, "BlackHole 2ch", "uid-80"}));
}

TEST_F(BlackHoleLocatorTest, aDeviceWithoutOutputChannelsIsNotListed)
{
    add(60, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{};
    add(61, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{0, 0};
    add(62, "BlackHole 2ch").configurationHasNoSize = true;
    EXPECT_THAT(findAll(), IsEmpty());
}

TEST_F(BlackHoleLocatorTest, channelsAreCountedWithASign)
{
    add(60, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{0x80000000};
    add(61, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{0xffffffff, 1};
    add(62, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{0xffffffff, 2};
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{62, "BlackHole 2ch", "uid-62"}));
}

TEST_F(BlackHoleLocatorTest, channelsMayLieInAnyBuffer)
{
    add(60, "BlackHole 2ch").outputBuffers = std::vector<std::uint32_t>{0, 1};
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{60, "BlackHole 2ch", "uid-60"}));
}

TEST_F(BlackHoleLocatorTest, aChannelSumBeyondASignedCountEndsTheProgram)
{
    add(60, "BlackHole").outputBuffers = std::vector<std::uint32_t>{0x7fffffff, 1};
    EXPECT_DEATH(findAll(), "");
}

TEST_F(BlackHoleLocatorTest, aDeviceWhoseStreamConfigurationCannotBeReadIsNotListed)
{
    add(60, "BlackHole 2ch").outputBuffers.reset();
    EXPECT_THAT(findAll(), IsEmpty());

    m_platform.objects().devices.clear();
    add(61, "BlackHole 2ch");
    m_platform.calls().fail("AudioObjectGetPropertyData slay", -5);
    EXPECT_THAT(findAll(), IsEmpty()) << "its size could be read, its value not";
}

TEST_F(BlackHoleLocatorTest, aDeviceWhoseNameCannotBeReadIsNotListed)
{
    add(60, "BlackHole 2ch").name.reset();
    add(61, "BlackHole 16ch");
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{61, "BlackHole 16ch", "uid-61"}));
}

TEST_F(BlackHoleLocatorTest, aDeviceWhoseUIDCannotBeReadIsListedWithAnEmptyOne)
{
    add(60, "BlackHole 2ch").uid.reset();
    EXPECT_THAT(findAll(), ElementsAre(BlackHoleDevice{60, "BlackHole 2ch", ""}));
}

TEST_F(BlackHoleLocatorTest, aDeviceListThatCannotBeReadIsEmpty)
{
    add(60, "BlackHole 2ch");
    m_platform.calls().failCall("AudioObjectGetPropertyDataSize dev#", 1, -5);
    EXPECT_THAT(findAll(), IsEmpty());
    m_platform.calls().failCall("AudioObjectGetPropertyData dev#", 1, -5);
    EXPECT_THAT(findAll(), IsEmpty());
    EXPECT_EQ(findAll().size(), 1U) << "the next question is answered again";
}

TEST_F(BlackHoleLocatorTest, propertiesAreAskedForInTheirScopes)
{
    add(60, "BlackHole 2ch");
    findAll();
    std::vector<AudioObjectPropertyAddress> addresses;
    std::vector<AudioObjectID> objects;
    for (const auto &read : m_platform.audioObjectProperties().reads()) {
        addresses.push_back(read.address);
        objects.push_back(read.object);
    }
    EXPECT_THAT(objects, ElementsAre(kAudioObjectSystemObject, 60U, 60U, 60U)) << "each once";
    EXPECT_THAT(addresses, ElementsAre(AudioObjectPropertyAddress{fourCharCode("dev#"), fourCharCode("glob"), 0},
                                       AudioObjectPropertyAddress{fourCharCode("lnam"), fourCharCode("glob"), 0},
                                       AudioObjectPropertyAddress{fourCharCode("slay"), fourCharCode("outp"), 0},
                                       AudioObjectPropertyAddress{fourCharCode("uid "), fourCharCode("glob"), 0}));
}

TEST_F(BlackHoleLocatorTest, onlyTheNameOfOtherDevicesIsRead)
{
    add(50, "Speakers");
    findAll();
    EXPECT_EQ(m_platform.calls().count("AudioObjectGetPropertyData lnam"), 1);
    EXPECT_EQ(m_platform.calls().count("AudioObjectGetPropertyDataSize slay"), 0);
    EXPECT_EQ(m_platform.calls().count("AudioObjectGetPropertyData uid "), 0);
}

namespace
{

/// A system whose answers about lengths make no sense.
class OddSizedProperties final : public AudioObjectProperties
{
  public:
    explicit OddSizedProperties(std::uint32_t size) : m_size(size) {}

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID, const AudioObjectPropertyAddress &,
                                            std::uint32_t &outDataSize) override
    {
        outDataSize = m_size;
        return noErr;
    }
    OSStatus AudioObjectGetPropertyData(AudioObjectID, const AudioObjectPropertyAddress &address,
                                        std::span<const std::byte>, std::uint32_t &ioDataSize, void *outData) override
    {
        if (address.mSelector != kAudioHardwarePropertyDevices)
            return -1;
        std::memset(outData, 1, ioDataSize); // as far as it was allowed to
        listBytes = ioDataSize;
        return noErr;
    }

    std::optional<std::uint32_t> listBytes;

  private:
    std::uint32_t m_size;
};

} // namespace

TEST(BlackHoleLocator, aDeviceListThatEndsWithinAnEntryIsReadUpToTheLastWholeOne)
{
    OddSizedProperties properties(7);
    EXPECT_THAT(BlackHoleLocator::findAll(properties), IsEmpty());
    EXPECT_EQ(properties.listBytes, 4U);
}

TEST(BlackHoleLocator, aDeviceListShorterThanAnEntryIsEmpty)
{
    OddSizedProperties properties(3);
    EXPECT_THAT(BlackHoleLocator::findAll(properties), IsEmpty());
}
