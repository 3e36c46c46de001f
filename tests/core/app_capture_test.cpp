#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;

namespace
{

class AppCaptureTest : public CoordinatorTest
{
};

} // namespace

TEST_F(AppCaptureTest, onlyOurOwnProcessIsExcludedWhateverIsPicked)
{
    m_platform.processInfo().processID = 555;
    m_platform.objects().processes = {{555, 90}, {music, 91}};
    pickAllAndStart();
    ASSERT_EQ(m_platform.processTaps().descriptions().size(), 1U);
    EXPECT_THAT(m_platform.processTaps().descriptions()[0].stereoGlobalTapButExcludeProcesses, ElementsAre(90U));
}

TEST_F(AppCaptureTest, whatTheTapDeliversIsCountedAndPlayed)
{
    pickAllAndStart();
    ASSERT_TRUE(tapCycle(0.5F, 4));
    EXPECT_THAT(outputCycle(4), ElementsAre(0.5F, 0.5F, 0.5F, 0.5F));
    passTicks(1);
    EXPECT_EQ(coordinator().appFrames(), 4U);
    EXPECT_EQ(coordinator().micFrames(), 0U);
}

TEST_F(AppCaptureTest, aTapThatCannotBeMadeEndsTheStart)
{
    calls().fail("AudioHardwareCreateProcessTap", -1);
    pickAllAndStart();
    EXPECT_EQ(status(), "Start failed [app-capture]: AudioHardwareCreateProcessTap failed (OSStatus -1). Likely TCC: "
                        "grant Audio Capture (Screen Recording) and relaunch. (NSOSStatusErrorDomain -1)");
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(AppCaptureTest, aTapThatCannotBeStartedIsReleased)
{
    calls().fail("AudioDeviceStart", -16);
    pickAllAndStart();
    EXPECT_EQ(status(),
              "Start failed [app-capture]: AudioDeviceStart failed (OSStatus -16). (NSOSStatusErrorDomain -16)");
    EXPECT_EQ(calls().count("AudioDeviceStop"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(AppCaptureTest, eachStartMakesATapOfItsOwn)
{
    pickAllAndStart();
    coordinator().teardown();
    start();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(calls().count("AudioHardwareCreateProcessTap"), 2);
    const auto &devices = m_platform.aggregateDevices().descriptions();
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_NE(std::get<std::string>(devices[0].at("uid")), std::get<std::string>(devices[1].at("uid")));
}
