#include "tests/window/real/drag_test.h"

// The window is resized at its edges and corners, and is never smaller than its least size.

namespace tolvenary::session
{

namespace
{

constexpr int leastSize = 520;

/// Where the pointer takes hold, as parts of the window: 0 is the left or upper edge, 1 the right or lower one.
struct Hold {
    const char *name;
    double x;
    double y;

    /// Within the border, on the pixels of the window.
    ScreenPoint on(const ScreenBox &box) const
    {
        const auto at = [](int begin, int length, double part) {
            return begin + std::clamp(static_cast<int>(length * part), 2, length - 3);
        };
        return {at(box.x, box.width, x), at(box.y, box.height, y)};
    }
    /// Which way is out of the window; 0 where this hold does not move the edge.
    ScreenPoint outward() const { return {outward(x), outward(y)}; }

  private:
    static int outward(double part) { return part == 0 ? -1 : part == 1 ? 1 : 0; }
};

void PrintTo(const Hold &hold, std::ostream *out)
{
    *out << hold.name;
}

} // namespace

class WindowResize : public DragTest, public testing::WithParamInterface<Hold>
{
};

TEST_P(WindowResize, followsTheHandAndStopsAtTheLeastSize)
{
    launch();
    const ScreenBox first = window().geometry();
    const ScreenPoint out = GetParam().outward();
    drag(GetParam().on(first), {out.x * 100, out.y * 100});
    const ScreenBox larger = {first.x - (out.x < 0 ? 100 : 0), first.y - (out.y < 0 ? 100 : 0),
                              first.width + (out.x != 0 ? 100 : 0), first.height + (out.y != 0 ? 100 : 0)};
    ASSERT_TRUE(eventuallyIsAbout(larger)) << window().geometry();

    const ScreenBox second = window().geometry();
    drag(GetParam().on(second), {out.x * -400, out.y * -400});
    EXPECT_TRUE(eventually([&] {
        const ScreenBox now = window().geometry();
        return now.width == (out.x != 0 ? leastSize : second.width) &&
               now.height == (out.y != 0 ? leastSize : second.height);
    })) << window().geometry();
    // The opposite edge has not moved.
    const ScreenBox last = window().geometry();
    if (out.x < 0)
        EXPECT_EQ(last.right(), second.right());
    else
        EXPECT_EQ(last.x, second.x);
    if (out.y < 0)
        EXPECT_EQ(last.bottom(), second.bottom());
    else
        EXPECT_EQ(last.y, second.y);
}

INSTANTIATE_TEST_SUITE_P(AtEveryHold, WindowResize,
                         testing::Values(Hold{"left", 0, 0.5}, Hold{"right", 1, 0.5}, Hold{"top", 0.5, 0},
                                         Hold{"bottom", 0.5, 1}, Hold{"topLeft", 0, 0}, Hold{"topRight", 1, 0},
                                         Hold{"bottomLeft", 0, 1}, Hold{"bottomRight", 1, 1}),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace tolvenary::session
