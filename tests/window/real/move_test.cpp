#include "tests/window/real/drag_test.h"

#include <csignal>

// The window is taken by any empty place and goes where the mouse goes; no control lets it go.

namespace tolvenary::session
{

class WindowMove : public DragTest
{
};

TEST_F(WindowMove, aDragOnAnEmptyPlaceMovesIt)
{
    launch();
    const ScreenBox before = window().geometry();
    drag(emptyPlace(), {-90, 40});
    EXPECT_TRUE(eventuallyIsAbout(moved(before, {-90, 40}))) << window().geometry();
}

TEST_F(WindowMove, aSecondDragMovesItAgain)
{
    launch();
    const ScreenBox before = window().geometry();
    drag(emptyPlace(), {-90, 40});
    ASSERT_TRUE(eventuallyIsAbout(moved(before, {-90, 40}))) << window().geometry();
    drag(emptyPlace(), {120, -70});
    EXPECT_TRUE(eventuallyIsAbout(moved(before, {30, -30}))) << window().geometry();
}

TEST_F(WindowMove, afterADragItStaysWhereItIs)
{
    launch();
    const ScreenBox before = window().geometry();
    drag(emptyPlace(), {-90, 40});
    ASSERT_TRUE(eventuallyIsAbout(moved(before, {-90, 40})));
    const ScreenBox after = window().geometry();
    wander();
    EXPECT_EQ(window().geometry(), after);
}

TEST_F(WindowMove, aShortClickDoesNotLetItHangOnThePointer)
{
    launch();
    const ScreenBox before = window().geometry();
    for (int time = 0; time < 5; ++time) {
        hands.click(emptyPlace());
        wander();
        ASSERT_EQ(window().geometry(), before) << "after click " << time + 1;
    }
}

TEST_F(WindowMove, aDragThatIsOverBeforeTheProgramHearsOfItDoesNotLetItHangOnThePointer)
{
    launch();
    const ScreenBox before = window().geometry();
    const ScreenPoint place = emptyPlace();
    for (int time = 0; time < 3; ++time) {
        program().process().signal(SIGSTOP);
        hands.moveTo(place);
        hands.press();
        hands.moveTo({place.x + 30, place.y});
        hands.release();
        program().process().signal(SIGCONT);
        wander();
        ASSERT_EQ(window().geometry(), before) << "after drag " << time + 1;
    }
}

TEST_F(WindowMove, aDragOnASliderMovesTheSliderAlone)
{
    launch();
    const ScreenBox before = window().geometry();
    const ScreenBox slider = boxOf("Mic gain", "slider");
    hands.moveTo(slider.centre());
    hands.press();
    hands.moveTo({slider.right() - 30, slider.y - 60});
    hands.moveTo({slider.right() + 40, slider.y - 120});
    hands.release();
    EXPECT_TRUE(eventually([this] { return valueOf("Mic gain") == 2; })) << valueOf("Mic gain");
    EXPECT_EQ(window().geometry(), before);
}

TEST_F(WindowMove, aDragOnAButtonNeitherMovesItNorPressesTheButton)
{
    launch();
    const ScreenBox before = window().geometry();
    hands.moveTo(boxOf("Start", "push button").centre());
    hands.press();
    hands.moveTo(emptyPlace());
    hands.release();
    wander();
    EXPECT_EQ(window().geometry(), before);
    EXPECT_TRUE(isThere("Idle", "notification"));
}

TEST_F(WindowMove, aDragOnAPickerDoesNotMoveIt)
{
    launch();
    const ScreenBox before = window().geometry();
    const ScreenPoint picker = boxOf("App", "combo box").centre();
    hands.moveTo(picker);
    hands.press();
    hands.moveTo({picker.x + 40, picker.y + 60});
    hands.moveTo({picker.x + 80, picker.y + 90});
    hands.release();
    hands.keys({"Escape"});
    wander();
    EXPECT_EQ(window().geometry(), before);
}

} // namespace tolvenary::session
