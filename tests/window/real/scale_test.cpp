#include "tests/window/real/drag_test.h"

#include <QImage>

// The window on screens whose points are more than a pixel.

namespace tolvenary::session
{

class WindowScale : public DragTest, public testing::WithParamInterface<const char *>
{
  protected:
    static void SetUpTestSuite() { openDesktop({.width = 1600, .height = 1300}); }

    void SetUp() override
    {
        DragTest::SetUp();
        launch({{"QT_QPA_PLATFORM", "xcb"}, {"QT_SCALE_FACTOR", GetParam()}});
    }
    double scale() const { return std::stod(GetParam()); }
};

TEST_P(WindowScale, opensInFullSizeAndIsDrawnWhereItSaysThatItsControlsAre)
{
    const ScreenBox box = window().geometry();
    EXPECT_EQ(box.width, static_cast<int>(520 * scale()));
    EXPECT_GE(box.height, static_cast<int>(520 * scale()));
    // A gain of 1 has its thumb in the middle.
    const ScreenPoint thumb = boxOf("Mic gain", "slider").centre();
    constexpr QRgb colourOfThumb = qRgb(236, 236, 240);
    EXPECT_TRUE(eventually([&] { return desktop().display().screenshot().pixel(thumb.x, thumb.y) == colourOfThumb; }));
    const std::filesystem::path file =
        std::filesystem::path(TOLVENARY_PICTURES) / ("window-" + std::string(GetParam()) + "x.png");
    EXPECT_TRUE(desktop().display().saveScreenshot(file, box));
}

TEST_P(WindowScale, isOperatedWhereItSaysThatItsControlsAre)
{
    clickOn("App", "combo box");
    ASSERT_TRUE(eventually([this] { return isThere(Desktop::musicProgram, "list item"); }));
    clickOn(Desktop::musicProgram, "list item");
    ASSERT_TRUE(eventually([this] { return !isThere(Desktop::musicProgram, "list item"); }));
    const ScreenBox slider = boxOf("Mic gain", "slider");
    hands.click({slider.right() - 2, slider.centre().y});
    EXPECT_TRUE(eventually([this] { return valueOf("Mic gain") == 2; })) << valueOf("Mic gain");
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
    clickOn("Stop", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));
}

TEST_P(WindowScale, isMovedAndResizedAndKeepsItsLeastSize)
{
    const ScreenBox before = window().geometry();
    drag(emptyPlace(), {-60, 30});
    ASSERT_TRUE(eventuallyIsAbout(moved(before, {-60, 30}))) << window().geometry();
    const ScreenBox box = window().geometry();
    drag({box.right() - 3, box.bottom() - 3}, {50, 40});
    ASSERT_TRUE(eventuallyIsAbout({box.x, box.y, box.width + 50, box.height + 40})) << window().geometry();
    const ScreenBox larger = window().geometry();
    drag({larger.right() - 3, larger.bottom() - 3}, {-500, -500});
    const int least = static_cast<int>(520 * scale());
    EXPECT_TRUE(eventually([&] {
        return window().geometry() == ScreenBox{box.x, box.y, least, least};
    })) << window().geometry();
}

INSTANTIATE_TEST_SUITE_P(AtEveryScale, WindowScale, testing::Values("1.25", "1.5", "2"), [](const auto &info) {
    return "times" + std::to_string(static_cast<int>(std::stod(info.param) * 100));
});

} // namespace tolvenary::session
