#include "tests/window/real/drag_test.h"

#include <cstdlib>

namespace tolvenary::session
{

namespace
{

int sign(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

ScreenPoint DragTest::emptyPlace()
{
    const ScreenBox title = boxOf("Tolvenary", "heading");
    return {title.right() - 20, title.centre().y};
}

void DragTest::take(ScreenPoint from, ScreenPoint by)
{
    const ScreenBox before = place();
    hands.moveTo(from);
    hands.press();
    // A window manager takes over some time after the program has asked it to, and sees the pointer from then on.
    m_lag = 4;
    const auto follows = [&] {
        ++m_lag;
        hands.moveTo({from.x + sign(by.x) * m_lag, from.y + sign(by.y) * m_lag});
        return !(place() == before);
    };
    EXPECT_TRUE(eventually(follows)) << "the window does not follow";
    hands.moveTo({from.x + by.x, from.y + by.y});
}

void DragTest::drag(ScreenPoint from, ScreenPoint by)
{
    take(from, by);
    hands.release();
}

bool DragTest::eventuallyIsAbout(const ScreenBox &box)
{
    const auto about = [this](int one, int other) { return std::abs(one - other) <= m_lag; };
    return eventually([&] {
        const ScreenBox now = place();
        return about(now.x, box.x) && about(now.y, box.y) && about(now.right(), box.right()) &&
               about(now.bottom(), box.bottom());
    });
}

ScreenBox DragTest::moved(ScreenBox box, ScreenPoint by)
{
    box.x += by.x;
    box.y += by.y;
    return box;
}

void DragTest::wander()
{
    const ScreenBox box = place();
    for (const int step : {60, 180, 320})
        hands.moveTo({box.x + step, box.bottom() - step});
    // The pointer's way is behind us when a key that came after it has been answered.
    const double wanted = valueOf("App gain") == 0 ? 2 : 0;
    hands.click(boxOf("App gain", "slider").centre());
    hands.keys({wanted == 0 ? "Home" : "End"});
    ASSERT_TRUE(eventually([&] { return valueOf("App gain") == wanted; })) << "the window does not answer";
}

} // namespace tolvenary::session
