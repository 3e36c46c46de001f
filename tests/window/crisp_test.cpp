#include "tests/core/event_loop.h"
#include "ui/glass_shape.h"
#include "ui/symbol.h"
#include "ui/symbol_drawings.h"

#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace tolvenary::test
{

namespace
{

/// A black window with something white in it.
class Crisp : public testing::Test
{
  protected:
    Crisp()
    {
        window.setColor(Qt::black);
        window.resize(100, 60);
        window.show();
        waitUntil([this] { return window.isExposed(); });
    }

    void put(QQuickItem &item, const QRectF &box)
    {
        item.setParentItem(window.contentItem());
        item.setPosition(box.topLeft());
        item.setSize(box.size());
    }

    QImage picture() { return window.grabWindow().convertToFormat(QImage::Format_Grayscale8); }
    qreal scale() const { return window.effectiveDevicePixelRatio(); }

    QQuickWindow window;
};

/// The pixels that are neither black nor white.
int greyPixels(const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        count += static_cast<int>(std::count_if(picture.constScanLine(y), picture.constScanLine(y) + picture.width(),
                                                [](uchar pixel) { return pixel > 4 && pixel < 251; }));
    return count;
}

int whitePixels(const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        count += static_cast<int>(std::count_if(picture.constScanLine(y), picture.constScanLine(y) + picture.width(),
                                                [](uchar pixel) { return pixel >= 251; }));
    return count;
}

int worstDifference(const QImage &one, const QImage &other)
{
    int worst = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            worst = std::max(worst, std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))));
    return worst;
}

} // namespace

TEST_F(Crisp, theWindowHasTheScreensPixels)
{
    EXPECT_EQ(picture().size(), (QSizeF(window.size()) * scale()).toSize());
}

TEST_F(Crisp, theEdgesOfAShapeLieOnWholePixelsWhereverItStands)
{
    GlassShape shape;
    shape.setProperty("fill", QVariantList{QColor(Qt::white)});
    for (const QRectF &box : {QRectF(10, 10, 50, 20), QRectF(10.3, 7.7, 50.4, 20.2), QRectF(9.5, 20.5, 33, 25)}) {
        put(shape, box);
        const QImage shown = picture();
        const QPoint first = (box.topLeft() * scale()).toPoint();
        const QPoint last = (box.bottomRight() * scale()).toPoint();
        EXPECT_EQ(greyPixels(shown), 0) << box.x();
        EXPECT_EQ(whitePixels(shown), (last.x() - first.x()) * (last.y() - first.y())) << box.x();
    }
}

TEST_F(Crisp, aSymbolIsDrawnInThePixelsOfTheScreen)
{
    Symbol symbol;
    symbol.setName("mic.fill");
    symbol.setProperty("colors", QVariantList{QColor(Qt::white)});
    const SymbolDrawing drawing = symbolDrawing("mic.fill");
    put(symbol, QRectF(QPointF(8, 8), drawing.box));
    const QRect place(QPoint(8, 8) * scale(), ((drawing.box + QSizeF(8, 8)) * scale()).toSize() -
                                                  QSize(qRound(8 * scale()), qRound(8 * scale())));
    QImage expected(place.size(), QImage::Format_RGB32);
    expected.fill(Qt::black);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(place.width() / drawing.box.width(), place.height() / drawing.box.height());
    painter.fillPath(drawing.filled, Qt::white);
    QPen pen = drawing.pen;
    pen.setBrush(Qt::white);
    painter.strokePath(drawing.stroked, pen);
    painter.end();
    EXPECT_LE(worstDifference(picture().copy(place), expected), 3);
    EXPECT_GT(whitePixels(expected.convertToFormat(QImage::Format_Grayscale8)), 20);
}

} // namespace tolvenary::test
