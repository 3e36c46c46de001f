#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"
#include "tests/ui/support/panel_stage.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

class Actions : public testing::Test
{
  protected:
    Actions()
    {
        stage.runApplications({"Firefox"});
        stage.plugIn({"BlackHole 2ch"});
        stage.pick("Firefox");
    }

    PanelStage stage;
};

} // namespace

TEST_F(Actions, aPressStartsTheMixAndTheNextOneStopsIt)
{
    stage.actions().startOrStop();
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
    stage.actions().startOrStop();
    ASSERT_TRUE(waitUntil([&] { return !stage.coordinator().isRunning(); }));
    EXPECT_EQ(stage.coordinator().status(), "Stopped");
    EXPECT_FALSE(stage.platform().holdsAnything());
}

TEST_F(Actions, whetherTheMixRunsIsReadWhenTheTaskHasItsTurn)
{
    stage.start();
    stage.actions().startOrStop();
    EXPECT_TRUE(stage.coordinator().isRunning());
    stage.coordinator().teardown();
    stage.coordinator().setStatus("torn down meanwhile");
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
    EXPECT_NE(stage.coordinator().status(), "Stopped");
}

TEST_F(Actions, aSecondPressWhileAStartIsUnderWayLeavesOneMix)
{
    FakeAnswer<bool> &server = stage.platform().audioServer().answered;
    server.holdBack();
    stage.actions().startOrStop();
    stage.actions().startOrStop();
    processEvents();
    ASSERT_FALSE(stage.coordinator().isRunning());
    server.deliver();
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
    processEvents();
    EXPECT_TRUE(stage.coordinator().isRunning());
    stage.coordinator().teardown();
    EXPECT_FALSE(stage.platform().holdsAnything());
}

TEST_F(Actions, aFailedStartLeavesItsStatusAlone)
{
    stage.coordinator().setSelectedAppID(std::nullopt);
    stage.actions().startOrStop();
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().status() != "Idle"; }));
    EXPECT_EQ(stage.coordinator().status(), "Pick an app first.");
}

TEST_F(Actions, refreshingReadsTheSystemAnew)
{
    stage.platform().shareableContent().applications.set(
        std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}, {"Firefox", 1, "firefox"}});
    stage.actions().refreshApps();
    EXPECT_TRUE(waitUntil([&] { return stage.coordinator().availableApps().size() == 2; }));

    stage.platform().objects().devices.clear();
    stage.actions().refreshBlackHole();
    EXPECT_TRUE(stage.coordinator().blackHoleDevices().empty());
}

} // namespace tolvenary::test
