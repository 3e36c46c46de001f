#include "tests/window/real/window_test.h"

// A picker under real mouse and keys.

namespace tolvenary::session
{

class WindowPicker : public WindowTest
{
  protected:
    std::string chosen() { return panel().description(panel().await("App", "combo box")); }
    bool isOpen() { return isThere(placeholder, "list item"); }
    bool opens()
    {
        return eventually([this] { return isOpen(); });
    }
    bool closes()
    {
        return eventually([this] { return !isOpen(); });
    }

    static constexpr const char *placeholder = "— pick an app —";
};

TEST_F(WindowPicker, opensByAClickAndARowIsPickedByAnother)
{
    launch();
    EXPECT_EQ(chosen(), placeholder);
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    clickOn(Desktop::musicProgram, "list item");
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen(), Desktop::musicProgram);
    EXPECT_TRUE(isThere("Idle", "notification"));
}

TEST_F(WindowPicker, escapeClosesItAndPicksNothing)
{
    launch();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    hands.keys({"Down", "Escape"});
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen(), placeholder);
}

TEST_F(WindowPicker, aClickBesideItClosesItAndDoesNothingElse)
{
    launch();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    clickOn("Start", "push button");
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen(), placeholder);
    EXPECT_TRUE(isThere("Idle", "notification"));
}

TEST_F(WindowPicker, typingGoesToARowAndReturnPicksItWithoutStarting)
{
    launch();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    hands.keys({"m", "u"});
    EXPECT_TRUE(eventually([this] { return panel().focus() == Desktop::musicProgram; })) << panel().focus();
    hands.keys({"Return"});
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen(), Desktop::musicProgram);
    EXPECT_TRUE(isThere("Idle", "notification")) << "the Return key went through to Start";
}

TEST_F(WindowPicker, keysLeadWhileThePointerRestsAndThePointerLeadsOnceItMoves)
{
    launch();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    hands.keys({"Down"});
    EXPECT_TRUE(eventually([this] { return panel().focus() == Desktop::musicProgram; })) << panel().focus();
    const ScreenPoint first = boxOf(placeholder, "list item").centre();
    hands.moveTo({first.x - 20, first.y});
    hands.moveTo({first.x - 40, first.y});
    EXPECT_TRUE(eventually([this] { return panel().focus() == placeholder; })) << panel().focus();
    hands.moveTo(boxOf(Desktop::musicProgram, "list item").centre());
    EXPECT_TRUE(eventually([this] { return panel().focus() == Desktop::musicProgram; })) << panel().focus();
}

TEST_F(WindowPicker, theWheelOverItChoosesARowAtATime)
{
    launch();
    const ScreenPoint picker = boxOf("App", "combo box").centre();
    hands.wheel(picker, 1);
    EXPECT_TRUE(eventually([this] { return chosen() == Desktop::musicProgram; })) << chosen();
    hands.wheel(picker, -1);
    EXPECT_TRUE(eventually([this] { return chosen() == placeholder; })) << chosen();
}

TEST_F(WindowPicker, theWheelScrollsAListThatIsLongerThanTheWindow)
{
    std::vector<std::unique_ptr<ChildProcess>> players;
    for (int number = 10; number < 40; ++number)
        players.push_back(playApplication(desktop().session(), {.nodeName = "player-" + std::to_string(number),
                                                                .applicationName = "Player " + std::to_string(number),
                                                                .channels = {"FL=silence"}}));
    launch();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    const std::string last = "Player 39";
    const ScreenPoint list = boxOf("App", "list").centre();
    const auto lastIsInView = [&] {
        const auto row = panel().find(last, "list item");
        return row && boxOf(last, "list item").bottom() <= boxOf("App", "list").bottom();
    };
    EXPECT_FALSE(lastIsInView());
    EXPECT_TRUE(eventually([&] {
        hands.wheel(list, 3);
        return lastIsInView();
    }));
    // A list that still moves takes a click as the wish that it stop.
    EXPECT_TRUE(eventually([&] {
        if (panel().find(last, "list item"))
            clickOn(last, "list item");
        return chosen() == last;
    })) << chosen();
}

TEST_F(WindowPicker, pickingWhileTheMixRunsLeavesItRunning)
{
    launch();
    startMix();
    clickOn("App", "combo box");
    ASSERT_TRUE(opens());
    clickOn(placeholder, "list item");
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen(), placeholder);
    const unsigned long before = program().applicationFrames();
    EXPECT_TRUE(eventually([&] { return program().applicationFrames() > before; }));
    EXPECT_TRUE(isThere("Stop", "push button"));
}

} // namespace tolvenary::session
