#include "tests/window/real/window_test.h"

#include <QImage>
#include <algorithm>

// The panel under the keyboard alone.

namespace tolvenary::session
{

class WindowKeys : public WindowTest
{
  protected:
    /// Presses Tab until what has this name has the keyboard.
    void tabTo(const std::string &name)
    {
        for (int stops = 0; stops < 12 && panel().focus() != name; ++stops)
            nextStop("Tab");
        ASSERT_EQ(panel().focus(), name);
    }

    /// Presses a key that moves the focus, and returns where it then is.
    std::string nextStop(const std::string &key)
    {
        const std::string before = panel().focus();
        hands.keys({key});
        eventually([&] { return panel().focus() != before; });
        return panel().focus();
    }

    /// Presses a key on the slider that has the keyboard, and returns whether it comes to the value.
    bool leadsTo(const std::string &key, const std::string &slider, double value)
    {
        hands.keys({key});
        return eventually([&] { return std::abs(valueOf(slider) - value) < 1e-6; });
    }

    /// The number at the right of a slider, as it is drawn.
    QImage readOutOf(const std::string &slider)
    {
        const ScreenBox box = boxOf(slider, "slider");
        return desktop().display().screenshot().copy(box.right() + 12, box.y, 56, box.height);
    }

    /// Where a number is drawn: it alone has a colour, and what twinkles behind it is grey.
    static bool isNumber(QRgb pixel)
    {
        const auto [least, most] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
        return most - least > 100;
    }

    /// Whether both show the same number: a star on the edge of a digit changes some pixels, another digit dozens.
    static bool isSameNumber(const QImage &one, const QImage &other)
    {
        int differing = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x)
                differing += isNumber(one.pixel(x, y)) != isNumber(other.pixel(x, y)) ? 1 : 0;
        }
        return differing < 8;
    }
};

TEST_F(WindowKeys, tabGoesThroughTheControlsFromTopToBottomAndAround)
{
    launch();
    const std::vector<std::string> order = {"App",    "Refresh apps",    "App gain", "Mic gain",
                                            "Device", "Refresh devices", "Start"};
    std::vector<std::string> stops;
    for (std::size_t stop = 0; stop < order.size() + 1; ++stop)
        stops.push_back(nextStop("Tab"));
    EXPECT_EQ(std::vector(stops.begin(), stops.end() - 1), order);
    EXPECT_EQ(stops.back(), order.front());
    EXPECT_EQ(nextStop("shift+Tab"), order.back());
    EXPECT_EQ(nextStop("shift+Tab"), order[order.size() - 2]);
}

TEST_F(WindowKeys, returnStartsAndStops)
{
    launch();
    pick("App", Desktop::musicProgram);
    hands.keys({"Return"});
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
    hands.keys({"Return"});
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));
    hands.keys({"KP_Enter"});
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
}

TEST_F(WindowKeys, returnStartsWhateverHasTheKeyboard)
{
    launch();
    pick("App", Desktop::musicProgram);
    tabTo("Mic gain");
    hands.keys({"Return"});
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
    EXPECT_EQ(valueOf("Mic gain"), 1);
}

TEST_F(WindowKeys, spacePressesTheButtonThatHasTheKeyboard)
{
    launch();
    pick("App", Desktop::musicProgram);
    tabTo("Start");
    hands.keys({"space"});
    EXPECT_TRUE(eventually([this] { return countsFrames(); }));
    hands.keys({"space"});
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));

    desktop().unplugDevice();
    tabTo("Refresh devices");
    hands.keys({"space"});
    EXPECT_TRUE(eventually([this] { return isVisible("Re-scan"); }));
}

TEST_F(WindowKeys, moveTheSliderThatHasTheKeyboard)
{
    launch();
    for (const char *slider : {"App gain", "Mic gain"}) {
        SCOPED_TRACE(slider);
        tabTo(slider);
        const QImage one = readOutOf(slider);
        EXPECT_TRUE(leadsTo("Right", slider, 1.05));
        EXPECT_TRUE(eventually([&] { return !isSameNumber(readOutOf(slider), one); })) << "the read-out stands still";
        EXPECT_TRUE(leadsTo("Up", slider, 1.10));
        EXPECT_TRUE(leadsTo("Left", slider, 1.05));
        EXPECT_TRUE(leadsTo("Down", slider, 1.00));
        EXPECT_TRUE(eventually([&] { return isSameNumber(readOutOf(slider), one); }))
            << "the read-out does not come back";
        EXPECT_TRUE(leadsTo("Page_Up", slider, 1.25));
        EXPECT_TRUE(leadsTo("Page_Down", slider, 1.00));
        EXPECT_TRUE(leadsTo("End", slider, 2));
        EXPECT_TRUE(leadsTo("Right", slider, 2));
        EXPECT_TRUE(leadsTo("Home", slider, 0));
        EXPECT_TRUE(leadsTo("Page_Down", slider, 0));
    }
    EXPECT_EQ(valueOf("App gain"), 0);
}

} // namespace tolvenary::session
