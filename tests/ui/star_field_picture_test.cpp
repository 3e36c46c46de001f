#include "tests/core/event_loop.h"
#include "ui/star_field.h"

#include <QQuickWindow>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace tolvenary::test
{

namespace
{

/// Light around one place of a picture.
struct Light {
    double sum = 0; ///< in pixels of full white
    QPointF middle;
};

Light lightAround(const QImage &picture, const QPointF &place)
{
    constexpr int reach = 5;
    Light light;
    for (int y = qRound(place.y()) - reach; y < qRound(place.y()) + reach; ++y) {
        for (int x = qRound(place.x()) - reach; x < qRound(place.x()) + reach; ++x) {
            if (!picture.rect().contains(x, y))
                continue;
            const double level = qGray(picture.pixel(x, y)) / 255.0;
            light.sum += level;
            light.middle += QPointF(x + 0.5, y + 0.5) * level;
        }
    }
    light.middle /= light.sum;
    return light;
}

/// A few stars in a black window, as the renderer of a machine without graphics hardware draws them.
class StarFieldPicture : public testing::Test
{
  protected:
    StarFieldPicture()
    {
        window.setColor(Qt::black);
        field.setParentItem(window.contentItem());
        field.setStars(stars);
    }

    QImage pictureIn(const QSize &size)
    {
        window.resize(size);
        field.setSize(size);
        window.show();
        waitUntil([this] { return window.isExposed(); });
        processEvents();
        return window.grabWindow();
    }

    const std::vector<Star> stars{
        {{}, 0.25, 0.5, 1.5, 0.8}, {{}, 0.7, 0.25, 0.6, 0.5}, {{}, 0.8, 0.7, 1.8, 0.95}, {{}, 1, 1, 1.8, 0.9}};
    QQuickWindow window;
    StarField field;
};

} // namespace

TEST_F(StarFieldPicture, everyStarShinesInItsPlaceAsLargeAndAsBrightAsItIs)
{
    for (const QSize &size : {QSize(120, 80), QSize(240, 80), QSize(150, 101)}) {
        const QImage picture = pictureIn(size);
        const qreal scale = picture.width() / static_cast<qreal>(size.width());
        for (const Star &star : stars) {
            SCOPED_TRACE(testing::Message() << size.width() << ": " << star.x << ", " << star.y);
            const QPointF place(star.x * size.width() * scale, star.y * size.height() * scale);
            const Light light = lightAround(picture, place);
            const double whole = std::numbers::pi * std::pow(star.r * scale, 2) * star.a;
            // Of one that stands in the corner a quarter is inside.
            const bool inCorner = star.x == 1;
            EXPECT_NEAR(light.sum, inCorner ? whole / 4 : whole, 0.1 * whole);
            if (!inCorner) {
                EXPECT_NEAR(light.middle.x(), place.x(), 0.1);
                EXPECT_NEAR(light.middle.y(), place.y(), 0.1);
            }
        }
    }
}

} // namespace tolvenary::test
