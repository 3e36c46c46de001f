#include "tests/window/real/window_test.h"

#include <QImage>
#include <algorithm>
#include <sys/resource.h>

// What a launch shows without being asked, and how the panel comes to a device.

namespace tolvenary::session
{

namespace
{

constexpr QRgb orange = qRgb(255, 159, 10);
constexpr QRgb green = qRgb(48, 209, 88);

/// A Start that works says this when no application is picked.
constexpr const char *answerToStart = "Pick an app first.";

} // namespace

class WindowLaunch : public WindowTest
{
  protected:
    /// The middle of the dot at the left of the output card, in the row of the button with this name.
    QRgb dotBeside(const std::string &button)
    {
        constexpr int fromTheEdge = 22 + 14 + 9 / 2;
        return desktop().display().screenshot().pixel(window().geometry().x + fromTheEdge, boxOf(button).centre().y);
    }

    /// Neither to the mouse, nor to the Return key, nor to assistive software.
    void expectStartDoesNothing()
    {
        clickOn("Start", "push button");
        press("Start");
        hands.click(boxOf("Mic gain", "slider").centre());
        hands.keys({"Return", "Home"});
        // What came first was answered first.
        ASSERT_TRUE(eventually([this] { return valueOf("Mic gain") == 0; }));
        EXPECT_FALSE(isThere(answerToStart)) << "it started";
        EXPECT_TRUE(isThere("Idle", "notification"));
    }
};

TEST_F(WindowLaunch, fillsBothListsWithoutBeingAsked)
{
    launch();
    EXPECT_EQ(panel().description(panel().await("Device", "combo box")), Desktop::device);
    EXPECT_TRUE(isThere(std::string("In Discord, set Input to ") + Desktop::device + "."));
    press("App");
    EXPECT_TRUE(eventually([this] { return isThere(Desktop::musicProgram, "list item"); }));
    hands.keys({"Escape"});
    EXPECT_TRUE(eventually([this] { return !isThere(Desktop::musicProgram, "list item"); }));
    press("Device");
    EXPECT_TRUE(eventually([this] { return isThere(Desktop::device, "list item"); }));
}

TEST_F(WindowLaunch, startsNothing)
{
    launch();
    EXPECT_TRUE(isThere("Idle"));
    EXPECT_TRUE(isThere("Start", "push button"));
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowLaunch, allowsItselfAsManyDescriptorsAsTheUserMayHave)
{
    rlimit ours{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &ours), 0);
    const rlimit customary{std::min<rlim_t>(ours.rlim_max / 2, 1024), ours.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &customary), 0);
    launch();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &ours), 0);
    rlimit its{};
    ASSERT_EQ(prlimit(program().pid(), RLIMIT_NOFILE, nullptr, &its), 0);
    EXPECT_EQ(its.rlim_cur, ours.rlim_max);
}

TEST_F(WindowLaunch, withoutADeviceSaysHowToGetOneAndRescanFindsIt)
{
    desktop().unplugDevice();
    launch();
    EXPECT_TRUE(isVisible("BlackHole not detected. Install via brew install blackhole-2ch."));
    EXPECT_TRUE(isVisible("Re-scan"));
    EXPECT_FALSE(isVisible("Device"));
    EXPECT_TRUE(eventually([this] { return dotBeside("Re-scan") == orange; })) << std::hex << dotBeside("Re-scan");
    expectStartDoesNothing();

    desktop().plugDevice();
    press("Re-scan");
    EXPECT_TRUE(eventually([this] { return isVisible("Device"); }));
    EXPECT_FALSE(isVisible("Re-scan"));
    EXPECT_EQ(panel().description(panel().await("Device", "combo box")), Desktop::device);
    EXPECT_TRUE(eventually([this] { return dotBeside("Refresh devices") == green; }))
        << std::hex << dotBeside("Refresh devices");
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return isThere(answerToStart, "notification"); }));
}

TEST_F(WindowLaunch, aDeviceThatGoesAwayIsMissedByARefreshAndTakesStartAlong)
{
    launch();
    desktop().unplugDevice();
    clickOn("Refresh devices");
    EXPECT_TRUE(eventually([this] { return isVisible("Re-scan"); }));
    expectStartDoesNothing();
}

} // namespace tolvenary::session
