#include "tests/core/coordinator_fixture.h"

#include <QMetaProperty>
#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;

namespace
{

class TeardownTest : public CoordinatorTest
{
  protected:
    /// Every published field by its name.
    QVariantMap published()
    {
        QVariantMap fields;
        const QMetaObject &type = MixCoordinator::staticMetaObject;
        for (int i = type.propertyOffset(); i < type.propertyCount(); ++i)
            fields.insert(QLatin1String(type.property(i).name()), type.property(i).read(&coordinator()));
        EXPECT_EQ(fields.size(), 10);
        return fields;
    }
    void runAMixAndMoveItsGains()
    {
        pickAllAndStart();
        coordinator().setMicGain(0.5F);
        coordinator().setAppGain(1.5F);
        inputCycle(0.1F, 10);
        tapCycle(0.1F, 20);
        passTicks(1);
    }
    /// Calls teardown() and answers how many writes of published fields it announced.
    int announcementsOfTeardown()
    {
        int announced = 0;
        const auto connection =
            QObject::connect(&coordinator(), &MixCoordinator::objectWillChange, &coordinator(), [&] { ++announced; });
        coordinator().teardown();
        QObject::disconnect(connection);
        return announced;
    }
};

} // namespace

TEST_F(TeardownTest, theMeterGoesFirstThenTheSourcesThenTheOutputAndEachInReverse)
{
    pickAllAndStart();
    calls().clearLog();
    coordinator().teardown();
    EXPECT_THAT(calls().log(), ElementsAre("invalidate", "AudioDeviceStop", "AudioDeviceDestroyIOProcID",
                                           "AudioHardwareDestroyAggregateDevice", "AudioHardwareDestroyProcessTap",
                                           "AudioOutputUnitStop input", "~AudioInputUnit", "AudioOutputUnitStop output",
                                           "~AudioOutputUnit"));
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(TeardownTest, statusCountsGainsAndPicksStay)
{
    runAMixAndMoveItsGains();
    const std::string before = status();
    coordinator().teardown();
    EXPECT_EQ(status(), before);
    EXPECT_EQ(coordinator().micFrames(), 10U);
    EXPECT_EQ(coordinator().appFrames(), 20U);
    EXPECT_EQ(coordinator().micGain(), 0.5F);
    EXPECT_EQ(coordinator().appGain(), 1.5F);
    EXPECT_EQ(coordinator().selectedAppID(), music);
    EXPECT_TRUE(coordinator().selectedBlackHole());
}

TEST_F(TeardownTest, onACoordinatorThatNeverRanNothingHappens)
{
    const QVariantMap atFirst = published();
    EXPECT_EQ(announcementsOfTeardown(), 1) << "that it does not run";
    EXPECT_EQ(published(), atFirst);

    pickAll();
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(1.5F);
    coordinator().setStatus(QStringLiteral("as it was"));
    calls().clearLog();
    const QVariantMap before = published();
    EXPECT_EQ(announcementsOfTeardown(), 1) << "that it does not run";
    EXPECT_EQ(published(), before);
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(TeardownTest, ofARunningMixNothingElseIsWrittenThanThatItDoesNotRun)
{
    runAMixAndMoveItsGains();
    QVariantMap expected = published();
    expected[QStringLiteral("isRunning")] = false;
    EXPECT_EQ(announcementsOfTeardown(), 1);
    EXPECT_EQ(published(), expected);
}

TEST_F(TeardownTest, thatItDoesNotRunIsToldWhenNothingIsLeft)
{
    pickAllAndStart();
    std::vector<bool> held;
    QObject::connect(&coordinator(), &MixCoordinator::isRunningChanged, &coordinator(),
                     [&] { held.push_back(m_platform.holdsAnything()); });
    coordinator().teardown();
    EXPECT_THAT(held, ElementsAre(false));
}

TEST_F(TeardownTest, aSecondOneFindsNothingLeft)
{
    pickAllAndStart();
    coordinator().teardown();
    calls().clearLog();
    coordinator().teardown();
    EXPECT_TRUE(calls().log().empty());
}

TEST_F(TeardownTest, gainsCanBeSetAfterwards)
{
    pickAllAndStart();
    coordinator().teardown();
    coordinator().setMicGain(0.5F);
    coordinator().setAppGain(0.5F);
    EXPECT_EQ(coordinator().micGain(), 0.5F);
}

TEST_F(TeardownTest, theDestructorReleasesARunningMixInTheSameOrder)
{
    pickAllAndStart();
    inputCycle(0.1F, 10); // still in the player
    calls().clearLog();
    m_coordinator.reset();
    EXPECT_THAT(calls().log(), ElementsAre("invalidate", "AudioDeviceStop", "AudioDeviceDestroyIOProcID",
                                           "AudioHardwareDestroyAggregateDevice", "AudioHardwareDestroyProcessTap",
                                           "AudioOutputUnitStop input", "~AudioInputUnit", "AudioOutputUnitStop output",
                                           "~AudioOutputUnit"));
    EXPECT_FALSE(m_platform.holdsAnything());
}
