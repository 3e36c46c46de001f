#include "tests/window/real/colours.h"
#include "tests/window/real/drag_test.h"

#include <QImage>
#include <csignal>

// The window on Wayland. No client is told there where its window is: that is read off the screen.

namespace tolvenary::session
{

namespace
{

constexpr int leastSize = 520;

/// The box of all that is not the background, but for the pointer's picture, which is smaller than `speck`.
ScreenBox findWindow(const QImage &screen)
{
    constexpr int speck = 64;
    std::vector<int> columns(static_cast<std::size_t>(screen.width()));
    std::vector<int> rows(static_cast<std::size_t>(screen.height()));
    for (int y = 0; y < screen.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(screen.constScanLine(y));
        for (int x = 0; x < screen.width(); ++x) {
            const bool covered = (line[x] | 0xff000000U) != VirtualDisplay::background;
            columns[static_cast<std::size_t>(x)] += covered;
            rows[static_cast<std::size_t>(y)] += covered;
        }
    }
    const auto span = [](const std::vector<int> &counts) {
        const auto isCovered = [](int count) { return count > speck; };
        const auto first = std::find_if(counts.begin(), counts.end(), isCovered);
        const auto end = std::find_if(counts.rbegin(), counts.rend(), isCovered).base();
        return std::pair(static_cast<int>(first - counts.begin()), static_cast<int>(std::max(end, first) - first));
    };
    const auto [x, width] = span(columns);
    const auto [y, height] = span(rows);
    return {x, y, width, height};
}

} // namespace

class WindowWayland : public DragTest
{
  protected:
    static void SetUpTestSuite() { openDesktop({.windowManager = WindowManager::weston}); }

    void open() { launch({{"QT_QPA_PLATFORM", "wayland"}}); }

    /// This compositor puts a window anywhere, which may leave no room for the hand.
    void openInTheMiddle()
    {
        open();
        const ScreenBox box = place();
        const ScreenPoint by = {350 - box.x, 200 - box.y};
        if (std::abs(by.x) + std::abs(by.y) > 40)
            drag(emptyPlace(), by);
        ASSERT_TRUE(eventually([&] { return std::abs(place().x - 350) < 40 && std::abs(place().y - 200) < 40; }))
            << place() << " from " << box;
    }

    ScreenBox place() override { return findWindow(desktop().display().screenshot()); }
    ScreenPoint origin() override
    {
        const ScreenBox box = place();
        return {box.x, box.y};
    }
    void awaitWindow() override
    {
        const auto isShown = [this] {
            const ScreenBox box = place();
            return box.width >= leastSize && box.height >= leastSize;
        };
        if (!eventually(isShown))
            throw std::runtime_error("no window is shown");
    }
};

TEST_F(WindowWayland, opensAsHighAsItsContentWithoutDecoration)
{
    open();
    EXPECT_EQ(place().width, leastSize);
    const ScreenBox frame = panel().box(panel().await("Tolvenary", "frame"));
    EXPECT_EQ(place().height, frame.height);
}

TEST_F(WindowWayland, showsWhatLiesBehindItsCornersUnlessItFillsTheScreen)
{
    open();
    const auto cornerIs = [this](QRgb colour) {
        return eventually([&] {
            const ScreenBox box = place();
            return box.width > 0 && isAbout(desktop().display().screenshot().pixel(box.x, box.y), colour);
        });
    };
    EXPECT_TRUE(cornerIs(VirtualDisplay::background));
    const ScreenBox box = place();
    EXPECT_TRUE(isAbout(desktop().display().screenshot().pixel(box.x + 6, box.y + 6), windowColour));
    clickOn("Zoom");
    ASSERT_TRUE(eventually([this] { return place() == desktop().screen(); })) << place();
    EXPECT_TRUE(cornerIs(windowColour));
}

TEST_F(WindowWayland, runsTheMixByMouse)
{
    open();
    clickOn("App", "combo box");
    ASSERT_TRUE(eventually([this] { return isThere(Desktop::musicProgram, "list item"); }));
    clickOn(Desktop::musicProgram, "list item");
    ASSERT_TRUE(eventually([this] { return !isThere(Desktop::musicProgram, "list item"); }));
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
    clickOn("Stop", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowWayland, isOperatedByKeysAndByAssistiveTools)
{
    open();
    hands.click(boxOf("Mic gain", "slider").centre());
    hands.keys({"Page_Up"});
    EXPECT_TRUE(eventually([this] { return valueOf("Mic gain") == 1.25; })) << valueOf("Mic gain");
    startMix();
    hands.keys({"Return"});
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));
}

TEST_F(WindowWayland, dragsMoveItAgainAndAgain)
{
    openInTheMiddle();
    const ScreenBox before = place();
    drag(emptyPlace(), {-90, 60});
    ASSERT_TRUE(eventuallyIsAbout(moved(before, {-90, 60}))) << place();
    const ScreenBox between = place();
    drag(emptyPlace(), {150, -40});
    ASSERT_TRUE(eventuallyIsAbout(moved(between, {150, -40}))) << place();
    const ScreenBox after = place();
    wander();
    EXPECT_EQ(place(), after);
}

TEST_F(WindowWayland, aShortClickDoesNotLetItHangOnThePointer)
{
    openInTheMiddle();
    const ScreenBox before = place();
    hands.click(emptyPlace());
    wander();
    EXPECT_EQ(place(), before);
}

TEST_F(WindowWayland, aDragAtACornerResizesItAndTheLeastSizeHolds)
{
    openInTheMiddle();
    // This compositor forgets which edge is held once the button is up: not before the window has followed.
    take({place().right() - 3, place().bottom() - 3}, {90, 70});
    EXPECT_TRUE(eventually([this] { return place().width > leastSize + 70; })) << place();
    hands.release();
    const ScreenBox larger = place();
    take({larger.right() - 3, larger.bottom() - 3}, {-400, -400});
    EXPECT_TRUE(eventually([&] { return place() == ScreenBox{larger.x, larger.y, leastSize, leastSize}; })) << place();
    hands.release();

    const ScreenBox least = place();
    take({least.x + 2, least.y + 2}, {-80, -60});
    EXPECT_TRUE(eventually([&] { return place().x < least.x - 60 && place().y < least.y - 40; })) << place();
    hands.release();
    EXPECT_EQ(place().right(), least.right());
    EXPECT_EQ(place().bottom(), least.bottom());
    take({place().x + 2, place().y + 2}, {400, 400});
    EXPECT_TRUE(eventually([&] { return place() == least; })) << place();
    hands.release();
}

TEST_F(WindowWayland, zoomFillsTheScreenAndGoesBack)
{
    open();
    const ScreenBox before = place();
    clickOn("Zoom");
    EXPECT_TRUE(eventually([this] { return place() == desktop().screen(); })) << place();
    EXPECT_TRUE(eventually([this] { return boxOf("Tolvenary", "frame") == desktop().screen(); }));
    clickOn("Zoom");
    EXPECT_TRUE(eventually([&] { return place().width == before.width && place().height == before.height; }))
        << place();
}

TEST_F(WindowWayland, minimiseTakesItOffTheScreen)
{
    open();
    clickOn("Minimise");
    EXPECT_TRUE(eventually([this] { return place().width == 0; })) << place();
}

TEST_F(WindowWayland, endsWithTheCloseButtonWhileTheMixRuns)
{
    open();
    startMix();
    clickOn("Close");
    EXPECT_EQ(program().process().waitForEnd(std::chrono::seconds(15)), 0);
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowWayland, endsWithATerminationSignal)
{
    open();
    startMix();
    program().process().signal(SIGTERM);
    EXPECT_EQ(program().process().waitForEnd(std::chrono::seconds(15)), 0);
    EXPECT_TRUE(leavesNoSound());
}

} // namespace tolvenary::session
