#include "ui/continuous_corners.h"
#include "ui/gaussian_blur.h"
#include "ui/ink.h"
#include "ui/symbol_drawings.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

TEST(ContinuousCorners, fillTheirRectangleAndNothingElse)
{
    const QRectF box(10, 20, 476, 134);
    EXPECT_EQ(continuousRoundedRectangle(box, 14).boundingRect(), box);
}

TEST(ContinuousCorners, easeIntoTheSidesOverOneAndSixTenthsOfTheRadius)
{
    const QPainterPath path = continuousRoundedRectangle({0, 0, 200, 200}, 10);
    EXPECT_TRUE(path.contains(QPointF(16.1, 0.01)));
    EXPECT_FALSE(path.contains(QPointF(12, 0.001)));
    EXPECT_TRUE(path.contains(QPointF(12, 0.2)));
}

TEST(ContinuousCorners, theArcHasTheRadius)
{
    const QPainterPath path = continuousRoundedRectangle({0, 0, 200, 200}, 10);
    const double onDiagonal = 10 - 10 / std::sqrt(2);
    EXPECT_FALSE(path.contains(QPointF(onDiagonal - 0.05, onDiagonal - 0.05)));
    EXPECT_TRUE(path.contains(QPointF(onDiagonal + 0.15, onDiagonal + 0.15)));
}

TEST(ContinuousCorners, halfTheSideIsACircle)
{
    const QPainterPath path = continuousRoundedRectangle({0, 0, 9, 9}, 4.5);
    for (int degrees = 0; degrees < 360; degrees += 15) {
        const double angle = degrees * M_PI / 180;
        const QPointF direction(std::cos(angle), std::sin(angle));
        EXPECT_TRUE(path.contains(QPointF(4.5, 4.5) + direction * 4.47)) << degrees;
        EXPECT_FALSE(path.contains(QPointF(4.5, 4.5) + direction * 4.53)) << degrees;
    }
}

TEST(ContinuousCorners, noRadiusIsAPlainRectangle)
{
    EXPECT_TRUE(continuousRoundedRectangle({0, 0, 10, 10}, 0).contains(QPointF(0.01, 0.01)));
}

TEST(GaussianBlur, spreadsAPointAsTheBellCurveDoes)
{
    QImage mask(41, 41, QImage::Format_Alpha8);
    mask.fill(0);
    for (int y = 15; y <= 25; ++y)
        for (int x = 0; x < 41; ++x)
            mask.scanLine(y)[x] = 255;
    const QImage blurred = gaussianBlur(mask, 4);
    // A band of 11 lines: erf(5.5 / (4 sqrt 2)) in its middle.
    EXPECT_NEAR(blurred.constScanLine(20)[20], 255 * std::erf(5.5 / (4 * std::sqrt(2))), 3);
    EXPECT_NEAR(blurred.constScanLine(14)[20], blurred.constScanLine(26)[20], 1);
    EXPECT_LT(blurred.constScanLine(2)[20], 2);
}

TEST(GaussianBlur, noDeviationChangesNothing)
{
    QImage mask(3, 3, QImage::Format_Alpha8);
    mask.fill(77);
    EXPECT_EQ(gaussianBlur(mask, 0), mask);
}

TEST(Colored, theColoursOpacityScalesTheMasks)
{
    QImage mask(1, 1, QImage::Format_Alpha8);
    mask.fill(128);
    const QColor result = colored(mask, QColor::fromRgbF(0, 1, 0, 0.5F)).pixelColor(0, 0);
    EXPECT_NEAR(result.alphaF(), 0.25F, 0.01F);
    EXPECT_EQ(result.green(), 255);
}

TEST(Symbols, everyNameOfThePanelIsDrawnWithinItsBox)
{
    for (const char *name : {"app.dashed", "mic.fill", "dot.radiowaves.left.and.right", "arrow.clockwise", "play.fill",
                             "stop.fill", "chevron.up.chevron.down", "checkmark"}) {
        const SymbolDrawing drawing = symbolDrawing(name);
        ASSERT_FALSE(drawing.box.isEmpty()) << name;
        EXPECT_FALSE(drawing.filled.isEmpty() && drawing.stroked.isEmpty()) << name;
        const double half = drawing.pen.style() == Qt::NoPen ? 0 : drawing.pen.widthF() / 2;
        const QRectF drawn = drawing.filled.boundingRect().united(
            drawing.stroked.isEmpty() ? QRectF() : drawing.stroked.boundingRect().adjusted(-half, -half, half, half));
        EXPECT_TRUE(QRectF(QPointF(), drawing.box).contains(drawn)) << name;
    }
}

TEST(Symbols, anUnknownNameIsAnEmptyBox)
{
    EXPECT_TRUE(symbolDrawing("no.such.symbol").box.isEmpty());
}

namespace
{

QImage clearImage()
{
    QImage image(20, 10, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

TEST(Ink, isTheBoxOfAllThatIsNotClearAndAPixelAround)
{
    QImage image = clearImage();
    image.setPixel(5, 7, 0x01000000);
    image.setPixel(12, 3, 0xFFFFFFFF);
    EXPECT_EQ(inkOf(image), QRect(QPoint(4, 2), QPoint(13, 8)));
}

TEST(Ink, doesNotReachOutOfItsImage)
{
    QImage image = clearImage();
    image.setPixel(0, 0, 0xFF000000);
    image.setPixel(19, 9, 0xFF000000);
    EXPECT_EQ(inkOf(image), image.rect());
}

TEST(Ink, ofNothingIsOnePixel)
{
    EXPECT_EQ(inkOf(clearImage()), QRect(0, 0, 1, 1));
}

} // namespace tolvenary::test
