#include "ui/cosmic_gradient.h"
#include "ui/glass_shape.h"
#include "ui/symbol.h"

#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tolvenary::test
{

namespace
{

/// An item that shows what it paints, with room around its box.
template <typename Item> class Painted : public Item
{
  public:
    QImage picture(qreal scale = 1, int room = 0) const
    {
        const QSizeF points = this->size() + QSizeF(2 * room, 2 * room);
        QImage image((points * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        painter.translate(room, room);
        this->paint(painter);
        return image;
    }
};

const QVariantList redToBlue{QColor(Qt::red), QColor(Qt::blue)};

void expectNear(const QColor &color, const QColor &expected, int tolerance)
{
    EXPECT_NEAR(color.red(), expected.red(), tolerance);
    EXPECT_NEAR(color.green(), expected.green(), tolerance);
    EXPECT_NEAR(color.blue(), expected.blue(), tolerance);
    EXPECT_NEAR(color.alpha(), expected.alpha(), tolerance);
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

/// How far a point has come on the way from one corner of a box to the opposite one.
double shareOfDiagonal(const QPointF &point, const QSizeF &box)
{
    return (point.x() * box.width() + point.y() * box.height()) /
           (box.width() * box.width() + box.height() * box.height());
}

} // namespace

TEST(PaintedGlass, theOutlineIsOnePointWideAndCentredOnTheEdge)
{
    Painted<GlassShape> glass;
    glass.setSize({40, 30});
    glass.setProperty("fill", QVariantList{QColor(Qt::red)});
    glass.setProperty("outline", QVariantList{QColor(Qt::blue)});
    const QImage picture = glass.picture(2, 5);
    const auto across = [&picture](int x) { return picture.pixelColor(x, 40); };
    EXPECT_EQ(across(8).alpha(), 0);
    expectNear(across(9), Qt::blue, 2);
    expectNear(across(10), Qt::blue, 2);
    expectNear(across(11), Qt::red, 2);
    expectNear(across(88), Qt::red, 2);
    expectNear(across(90), Qt::blue, 2);
    EXPECT_EQ(across(91).alpha(), 0);
}

TEST(PaintedGlass, severalColoursRunAlongTheTrueDiagonal)
{
    Painted<GlassShape> glass;
    const QSizeF box(136, 36);
    glass.setSize(box);
    glass.setProperty("fill", QVariantList{QColor(Qt::red), QColor(Qt::green), QColor(Qt::blue)});
    const QImage picture = glass.picture();
    for (const QPoint &point : {QPoint(1, 1), QPoint(12, 18), QPoint(67, 18), QPoint(120, 18), QPoint(134, 1),
                                QPoint(1, 34), QPoint(134, 34)}) {
        const double share = shareOfDiagonal(point + QPointF(0.5, 0.5), box);
        const QColor expected =
            share < 0.5 ? mixed(Qt::red, Qt::green, 2 * share) : mixed(Qt::green, Qt::blue, 2 * share - 1);
        SCOPED_TRACE(testing::Message() << point.x() << ", " << point.y());
        expectNear(picture.pixelColor(point), expected, 3);
    }
    glass.setProperty("mirrored", true);
    EXPECT_EQ(glass.picture().pixelColor(134, 1), picture.pixelColor(1, 1));
    EXPECT_EQ(glass.picture().pixelColor(1, 34), picture.pixelColor(134, 34));
}

TEST(PaintedGlass, theShadowIsABlurOfItsRadiusMovedDown)
{
    Painted<GlassShape> glass;
    glass.setSize({120, 120});
    glass.setProperty("shadowColor", QColor::fromRgbF(0, 0, 0, 0.45F));
    glass.setProperty("shadowRadius", 10);
    glass.setProperty("shadowOffset", 4);
    for (const int scale : {1, 2}) {
        const QImage picture = glass.picture(scale, 40);
        // The mean of the two pixels beside a line that runs between pixels.
        const auto beside = [&](int x, int y, const QPoint &other) {
            const QPoint point = QPoint(40 + x, 40 + y) * scale;
            return static_cast<double>(picture.pixelColor(point).alphaF() +
                                       picture.pixelColor(point - other).alphaF()) /
                   2;
        };
        // Of half the plane a Gaussian leaves a half on the edge, and 0.1587 one standard deviation outside of it.
        EXPECT_NEAR(beside(0, 64, {1, 0}), 0.45 * 0.5, 0.008) << scale;
        EXPECT_NEAR(beside(-10, 64, {1, 0}), 0.45 * 0.1587, 0.008) << scale;
        EXPECT_NEAR(beside(130, 64, {1, 0}), 0.45 * 0.1587, 0.008) << scale;
        EXPECT_NEAR(beside(60, 4, {0, 1}), 0.45 * 0.5, 0.008) << scale;
        EXPECT_NEAR(beside(60, 134, {0, 1}), 0.45 * 0.1587, 0.008) << scale;
    }
}

namespace
{

/// The panel's background as it is written, without stars.
class PaintedBackground : public testing::Test
{
  protected:
    PaintedBackground()
    {
        background.setSize(box);
        background.setProperty("base", QVariantList{base[0], base[1], base[2]});
        background.setProperty("topGlow", QColor::fromRgbF(191 / 255.0F, 90 / 255.0F, 242 / 255.0F, 0.35F));
        background.setProperty("bottomGlow", QColor::fromRgbF(100 / 255.0F, 210 / 255.0F, 1, 0.18F));
        background.setProperty("glowStart", 30);
        background.setProperty("topGlowEnd", 420);
        background.setProperty("bottomGlowEnd", 380);
    }

    QColor expectedAt(const QPointF &point) const
    {
        const double share = shareOfDiagonal(point, box);
        const QColor ground = share < 0.5 ? mixed(base[0], base[1], 2 * share) : mixed(base[1], base[2], 2 * share - 1);
        const auto glow = [&point](const QPointF &corner, double opacity, double end) {
            const double distance = std::hypot(point.x() - corner.x(), point.y() - corner.y());
            return opacity * (1 - std::clamp((distance - 30) / (end - 30), 0.0, 1.0));
        };
        const QColor underTop = mixed(ground, QColor(191, 90, 242), glow({box.width(), 0}, 0.35, 420));
        return mixed(underTop, QColor(100, 210, 255), glow({0, box.height()}, 0.18, 380));
    }

    const QSizeF box{520, 539};
    const std::array<QColor, 3> base{QColor::fromRgbF(0.04F, 0.03F, 0.10F), QColor::fromRgbF(0.08F, 0.05F, 0.18F),
                                     QColor::fromRgbF(0.05F, 0.02F, 0.12F)};
    Painted<CosmicGradient> background;
};

} // namespace

TEST_F(PaintedBackground, isTheGradientUnderItsTwoGlows)
{
    const QImage picture = background.picture();
    for (int x = 4; x < 520; x += 39) {
        for (int y = 4; y < 539; y += 41) {
            SCOPED_TRACE(testing::Message() << x << ", " << y);
            expectNear(picture.pixelColor(x, y), expectedAt(QPointF(x + 0.5, y + 0.5)), 2);
        }
    }
}

TEST_F(PaintedBackground, isMirroredWithTheWindow)
{
    const QImage picture = background.picture();
    background.setProperty("mirrored", true);
    const QImage mirrored = background.picture();
    for (const QPoint &point : {QPoint(5, 5), QPoint(514, 5), QPoint(5, 530), QPoint(514, 530), QPoint(100, 300)})
        expectNear(mirrored.pixelColor(519 - point.x(), point.y()), picture.pixelColor(point), 1);
}

TEST_F(PaintedBackground, roundCornersAreClear)
{
    EXPECT_EQ(background.picture().pixelColor(0, 0).alpha(), 255);
    background.setProperty("cornerRadius", 10);
    const QImage picture = background.picture();
    for (const QPoint &corner : {QPoint(0, 0), QPoint(519, 0), QPoint(0, 538), QPoint(519, 538)})
        EXPECT_EQ(picture.pixelColor(corner).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(260, 0).alpha(), 255);
}

TEST(PaintedSymbol, twoColoursRunFromTheLeadingToTheTrailingEdge)
{
    Painted<Symbol> symbol;
    symbol.setName("stop.fill");
    symbol.setSize({12, 16});
    symbol.setProperty("colors", redToBlue);
    const QImage picture = symbol.picture();
    // The middle of a column of pixels has come (x + 0.5) / 12 of the way.
    expectNear(picture.pixelColor(2, 8), mixed(Qt::red, Qt::blue, 2.5 / 12), 3);
    expectNear(picture.pixelColor(9, 8), mixed(Qt::red, Qt::blue, 9.5 / 12), 3);
    symbol.setProperty("mirrored", true);
    expectNear(symbol.picture().pixelColor(2, 8), mixed(Qt::red, Qt::blue, 9.5 / 12), 3);
    symbol.setProperty("colors", QVariantList{QColor(Qt::green)});
    expectNear(symbol.picture().pixelColor(2, 8), Qt::green, 1);
}

} // namespace tolvenary::test
