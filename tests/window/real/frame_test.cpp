#include "tests/window/real/colours.h"
#include "tests/window/real/window_test.h"

#include <QImage>
#include <fstream>
#include <regex>
#include <sstream>

// What the window is to the window manager, and what its own three buttons do.

namespace tolvenary::session
{

class WindowFrame : public WindowTest
{
};

TEST_F(WindowFrame, hasNoDecorationAndItsContentReachesToItsEdges)
{
    launch();
    EXPECT_EQ(window().property("_NET_FRAME_EXTENTS"), "0, 0, 0, 0");
    const ScreenBox box = window().geometry();
    EXPECT_EQ(panel().box(panel().await("Tolvenary", "frame")), box);
    EXPECT_TRUE(
        eventually([&] { return isAbout(desktop().display().screenshot().pixel(box.x, box.y), windowColour); }));
}

TEST_F(WindowFrame, flashesNoTitleBarWhileItOpens)
{
    const auto witness = desktop().session().start({"xev", "-root", "-event", "substructure"});
    launch();
    // The witness is there once it has seen anything; what the first launch did before that, it missed.
    ASSERT_TRUE(eventually([&] { return !witness->output().empty(); }));
    launch();
    // Every window of the screen that came or changed, frames among them.
    const std::string seen = witness->output();
    const std::regex size("width ([0-9]+), height ([0-9]+)");
    const ScreenBox box = window().geometry();
    bool sawTheWindow = false;
    for (auto one = std::sregex_iterator(seen.begin(), seen.end(), size); one != std::sregex_iterator(); ++one) {
        const int width = std::stoi((*one)[1]);
        const int height = std::stoi((*one)[2]);
        EXPECT_TRUE(width <= box.width && height <= box.height) << (*one)[0];
        sawTheWindow = sawTheWindow || (width == box.width && height == box.height);
    }
    EXPECT_TRUE(sawTheWindow) << seen;
}

TEST_F(WindowFrame, saysWhoseItIs)
{
    launch();
    EXPECT_EQ(window().property("_NET_WM_NAME"), "\"Tolvenary\"");
    EXPECT_EQ(window().property("WM_CLASS"), "\"tolvenary\", \"Tolvenary\"");
    std::ostringstream entry;
    entry << std::ifstream(TOLVENARY_DESKTOP_ENTRY).rdbuf();
    EXPECT_NE(entry.str().find("\nStartupWMClass=Tolvenary\n"), std::string::npos) << "docks join the two by it";
    EXPECT_EQ(window().property("_NET_WM_PID"), std::to_string(program().pid()));
    EXPECT_NE(window().property("_NET_WM_WINDOW_TYPE").find("_NET_WM_WINDOW_TYPE_NORMAL"), std::string::npos);
}

TEST_F(WindowFrame, opensAsHighAsItsContentAndTellsItsLeastSize)
{
    launch();
    EXPECT_EQ(window().geometry().width, 520);
    EXPECT_GE(window().geometry().height, 520);
    EXPECT_NE(window().property("WM_NORMAL_HINTS").find("minimum size: 520 by 520"), std::string::npos)
        << window().property("WM_NORMAL_HINTS");
    const ScreenBox start = boxOf("Start", "push button");
    EXPECT_NEAR(window().geometry().bottom() - start.bottom(), 23, 1) << "its margin";
}

TEST_F(WindowFrame, closeEndsTheProgram)
{
    launch();
    clickOn("Close");
    EXPECT_EQ(program().process().waitForEnd(std::chrono::seconds(15)), 0);
}

TEST_F(WindowFrame, minimiseMakesItAnIconAndItComesBackAsItWas)
{
    launch();
    const ScreenBox before = window().geometry();
    clickOn("Minimise");
    EXPECT_TRUE(eventually([this] { return window().isIconic() && !window().isOnScreen(); }));
    window().activate();
    EXPECT_TRUE(eventually([this] { return !window().isIconic() && window().isOnScreen(); }));
    EXPECT_EQ(window().geometry(), before);
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Pick an app first.", "notification"); })) << "it came back deaf";
}

TEST_F(WindowFrame, zoomFillsTheScreenAndGoesBack)
{
    launch();
    const ScreenBox before = window().geometry();
    clickOn("Zoom");
    EXPECT_TRUE(eventually([this] { return window().isMaximised() && window().geometry() == desktop().screen(); }))
        << window().geometry();
    EXPECT_TRUE(eventually([this] { return boxOf("Tolvenary", "frame") == desktop().screen(); }));
    clickOn("Zoom");
    EXPECT_TRUE(eventually([&] { return !window().isMaximised() && window().geometry() == before; }))
        << window().geometry();
}

TEST_F(WindowFrame, aZoomedWindowIsNotResizedAtItsEdges)
{
    launch();
    clickOn("Zoom");
    ASSERT_TRUE(eventually([this] { return boxOf("Tolvenary", "frame") == desktop().screen(); }));
    const ScreenBox screen = desktop().screen();
    hands.moveTo({screen.right() - 3, screen.height / 2});
    hands.press();
    for (const int step : {5, 40, 200})
        hands.moveTo({screen.right() - 3 - step, screen.height / 2});
    hands.release();
    hands.click(boxOf("Mic gain", "slider").centre());
    hands.keys({"Home"});
    ASSERT_TRUE(eventually([this] { return valueOf("Mic gain") == 0; }));
    EXPECT_EQ(window().geometry(), screen);
}

} // namespace tolvenary::session
