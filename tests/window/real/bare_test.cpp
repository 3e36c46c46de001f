#include "tests/window/real/drag_test.h"

// Where no window manager runs, the window looks after itself.

namespace tolvenary::session
{

namespace
{

constexpr int leastSize = 520;

} // namespace

class WindowBare : public DragTest
{
  protected:
    static void SetUpTestSuite() { openDesktop({.windowManager = WindowManager::none}); }

    /// Away from the screen's corner, where it opens.
    void launchInTheMiddle()
    {
        launch();
        const ScreenBox before = window().geometry();
        drag(emptyPlace(), {300, 200});
        ASSERT_TRUE(eventuallyIs(moved(before, {300, 200}))) << window().geometry();
    }

    /// Here nobody takes over from the program, and nothing of the way is lost.
    bool eventuallyIs(const ScreenBox &box)
    {
        return eventually([&] { return window().geometry() == box; });
    }
};

TEST_F(WindowBare, dragsMoveItAgainAndAgain)
{
    launchInTheMiddle();
    const ScreenBox before = window().geometry();
    drag(emptyPlace(), {-120, 70});
    EXPECT_TRUE(eventuallyIs(moved(before, {-120, 70}))) << window().geometry();
    const ScreenBox after = window().geometry();
    hands.moveTo({after.x + 60, after.y + 60});
    const ScreenBox slider = boxOf("Mic gain", "slider");
    hands.click({slider.right() - 2, slider.centre().y});
    EXPECT_TRUE(eventually([this] { return valueOf("Mic gain") == 2; }));
    EXPECT_EQ(window().geometry(), after);
}

TEST_F(WindowBare, cornersResizeItAndTheLeastSizeHolds)
{
    launchInTheMiddle();
    const ScreenBox first = window().geometry();
    drag({first.right() - 3, first.bottom() - 3}, {80, 60});
    ASSERT_TRUE(eventuallyIs({first.x, first.y, first.width + 80, first.height + 60})) << window().geometry();
    const ScreenBox second = window().geometry();
    drag({second.right() - 3, second.bottom() - 3}, {-500, -500});
    ASSERT_TRUE(eventuallyIs({first.x, first.y, leastSize, leastSize})) << window().geometry();

    const ScreenBox third = window().geometry();
    drag({third.x + 2, third.y + 2}, {-70, -50});
    ASSERT_TRUE(eventuallyIs({third.x - 70, third.y - 50, leastSize + 70, leastSize + 50})) << window().geometry();
    const ScreenBox fourth = window().geometry();
    drag({fourth.x + 2, fourth.y + 2}, {400, 300});
    EXPECT_TRUE(eventuallyIs(third)) << window().geometry();
}

TEST_F(WindowBare, isOperatedByMouse)
{
    launch();
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Pick an app first.", "notification"); }));
    clickOn("Close");
    EXPECT_EQ(program().process().waitForEnd(std::chrono::seconds(15)), 0);
}

} // namespace tolvenary::session
