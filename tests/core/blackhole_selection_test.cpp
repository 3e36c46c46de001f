#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const BlackHoleDevice first{blackHole, "BlackHole 16ch", "uid-60"};
const BlackHoleDevice second{otherBlackHole, "BlackHole 2ch", "uid-61"};

class BlackHoleSelectionTest : public CoordinatorTest
{
  protected:
    void addBoth()
    {
        addDevice(first.id, first.name);
        addDevice(second.id, second.name);
        coordinator().refreshBlackHole();
    }
    void removeDevice(AudioObjectID id)
    {
        std::erase_if(m_platform.objects().devices, [id](const FakeDevice &device) { return device.id == id; });
    }
};

} // namespace

TEST_F(BlackHoleSelectionTest, withoutADeviceNothingIsSelected)
{
    coordinator().setSelectedBlackHole(first);
    coordinator().refreshBlackHole();
    EXPECT_THAT(coordinator().blackHoleDevices(), IsEmpty());
    EXPECT_EQ(coordinator().selectedBlackHole(), std::nullopt);
}

TEST_F(BlackHoleSelectionTest, theSystemsFirstDeviceIsSelectedWhateverItsName)
{
    addBoth();
    EXPECT_THAT(coordinator().blackHoleDevices(), ElementsAre(first, second));
    EXPECT_EQ(coordinator().selectedBlackHole(), first);
}

TEST_F(BlackHoleSelectionTest, theUsersChoiceStaysWhileItsDeviceDoes)
{
    addBoth();
    coordinator().setSelectedBlackHole(second);
    coordinator().refreshBlackHole();
    EXPECT_EQ(coordinator().selectedBlackHole(), second);
}

TEST_F(BlackHoleSelectionTest, theChoiceIsKeptByItsObjectAloneAndAsItWasPicked)
{
    addBoth();
    coordinator().setSelectedBlackHole(second);
    m_platform.objects().devices[1].name = "My BlackHole";
    m_platform.objects().devices[1].uid = "another";
    coordinator().refreshBlackHole();
    EXPECT_EQ(coordinator().selectedBlackHole(), second);
    EXPECT_EQ(coordinator().blackHoleDevices()[1].name, "My BlackHole");
}

TEST_F(BlackHoleSelectionTest, whenTheSelectedDeviceIsGoneTheFirstThatIsLeftIsSelected)
{
    addBoth();
    removeDevice(first.id);
    coordinator().refreshBlackHole();
    EXPECT_EQ(coordinator().selectedBlackHole(), second);
    removeDevice(second.id);
    coordinator().refreshBlackHole();
    EXPECT_EQ(coordinator().selectedBlackHole(), std::nullopt);
}

TEST_F(BlackHoleSelectionTest, theSameUIDOnAnotherObjectIsAnotherDevice)
{
    addBoth();
    coordinator().setSelectedBlackHole(second);
    m_platform.objects().devices[1].id = 99;
    coordinator().refreshBlackHole();
    EXPECT_EQ(coordinator().selectedBlackHole(), first);
}

TEST_F(BlackHoleSelectionTest, aRefreshAsksTheSystemOnceAndAfreshEachTime)
{
    addBoth();
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData dev#"), 1);
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData uid "), 2);
    coordinator().refreshBlackHole();
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData dev#"), 2);
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData uid "), 4);
}

TEST_F(BlackHoleSelectionTest, aRefreshSaysNothing)
{
    coordinator().setStatus(QStringLiteral("Stopped"));
    addBoth();
    EXPECT_EQ(status(), "Stopped");
    m_platform.objects().devices.clear();
    coordinator().refreshBlackHole();
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(BlackHoleSelectionTest, aListThatCannotBeReadIsEmptyAndNoStatus)
{
    addBoth();
    calls().fail("AudioObjectGetPropertyData dev#", -5);
    coordinator().refreshBlackHole();
    EXPECT_THAT(coordinator().blackHoleDevices(), IsEmpty());
    EXPECT_EQ(coordinator().selectedBlackHole(), std::nullopt);
    EXPECT_EQ(status(), "Idle");
}
