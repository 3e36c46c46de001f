#include "ui/symbol_drawings.h"

#include <QHash>
#include <QtMath>

namespace tolvenary
{

namespace
{

QPen roundPen(qreal width)
{
    return {Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

SymbolDrawing appDashed()
{
    constexpr qreal edge = 1.6;
    constexpr qreal far = 16 - edge;
    constexpr qreal corner = 4.8;
    constexpr qreal round = 2 * corner;
    SymbolDrawing drawing{{16, 16}, {}, {}, roundPen(1.3)};
    QPainterPath &path = drawing.stroked;
    path.moveTo(8, edge);
    path.lineTo(far - corner, edge);
    path.arcTo(far - round, edge, round, round, 90, -90);
    path.lineTo(far, far - corner);
    path.arcTo(far - round, far - round, round, round, 0, -90);
    path.lineTo(edge + corner, far);
    path.arcTo(edge, far - round, round, round, 270, -90);
    path.lineTo(edge, edge + corner);
    path.arcTo(edge, edge, round, round, 180, -90);
    path.closeSubpath();

    // Twelve dashes around, the first centred on the start of the outline. Lengths of a pen are in its widths.
    const qreal unit = path.length() / 48 / drawing.pen.widthF();
    drawing.pen.setDashPattern({2.1 * unit, 1.9 * unit});
    drawing.pen.setDashOffset(1.05 * unit);
    return drawing;
}

SymbolDrawing micFill()
{
    SymbolDrawing drawing{{11, 16}, {}, {}, roundPen(1.15)};
    drawing.filled.addRoundedRect(QRectF(3.1, 0.9, 4.8, 9), 2.4, 2.4);
    QPainterPath &path = drawing.stroked;
    path.moveTo(0.9, 7.4);
    path.lineTo(0.9, 8.2);
    path.arcTo(QRectF(0.9, 3.6, 9.2, 9.2), 180, 180);
    path.lineTo(10.1, 7.4);
    path.moveTo(5.5, 12.8);
    path.lineTo(5.5, 15);
    path.moveTo(3.2, 15.1);
    path.lineTo(7.8, 15.1);
    return drawing;
}

/// One wave on each side of the middle: an arc of that radius whose ends lie at `x` from the box's edge.
void addWaves(QPainterPath &path, qreal x, qreal halfHeight, qreal radius)
{
    constexpr qreal width = 20;
    constexpr qreal middle = 8;
    const qreal center = x + qSqrt(radius * radius - halfHeight * halfHeight);
    const qreal half = qRadiansToDegrees(qAsin(halfHeight / radius));
    const QRectF left(center - radius, middle - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(left, 180 - half);
    path.arcTo(left, 180 - half, 2 * half);
    const QRectF right = left.translated(width - 2 * center, 0);
    path.arcMoveTo(right, -half);
    path.arcTo(right, -half, 2 * half);
}

SymbolDrawing dotRadiowaves()
{
    SymbolDrawing drawing{{20, 16}, {}, {}, roundPen(1.3)};
    drawing.filled.addEllipse(QPointF(10, 8), 1.9, 1.9);
    addWaves(drawing.stroked, 6.6, 3.1, 4.5);
    addWaves(drawing.stroked, 4, 5.3, 7.8);
    return drawing;
}

SymbolDrawing arrowClockwise()
{
    SymbolDrawing drawing{{13, 15}, {}, {}, roundPen(1.25)};
    const QRectF circle(1.501, 2.578, 10, 10);
    drawing.stroked.arcMoveTo(circle, 28.4);
    drawing.stroked.arcTo(circle, 28.4, 330.2);
    QPainterPath &head = drawing.filled;
    head.moveTo(11.9, 2.1);
    head.lineTo(11.9, 5.7);
    head.quadTo(11.9, 6.05, 11.55, 6.05);
    head.lineTo(8, 6.05);
    head.quadTo(7.35, 5.9, 7.7, 5.33);
    head.lineTo(11.2, 1.83);
    head.quadTo(11.75, 1.5, 11.9, 2.1);
    head.closeSubpath();
    return drawing;
}

SymbolDrawing playFill()
{
    SymbolDrawing drawing{{12, 16}, {}, {}, QPen(Qt::NoPen)};
    QPainterPath &path = drawing.filled;
    path.moveTo(2.2, 3.2);
    path.lineTo(2.2, 12.8);
    path.quadTo(2.3, 13.85, 3.26, 13.4);
    path.lineTo(11.26, 8.6);
    path.quadTo(11.9, 8, 11.26, 7.4);
    path.lineTo(3.26, 2.6);
    path.quadTo(2.3, 2.15, 2.2, 3.2);
    path.closeSubpath();
    return drawing;
}

SymbolDrawing stopFill()
{
    SymbolDrawing drawing{{12, 16}, {}, {}, QPen(Qt::NoPen)};
    drawing.filled.addRoundedRect(QRectF(0.8, 2.8, 10.4, 10.4), 1.8, 1.8);
    return drawing;
}

SymbolDrawing chevronUpDown()
{
    SymbolDrawing drawing{{15, 15}, {}, {}, roundPen(1.3)};
    drawing.stroked.addPolygon(QPolygonF({{4.9, 6.2}, {7.5, 3.6}, {10.1, 6.2}}));
    drawing.stroked.addPolygon(QPolygonF({{4.9, 8.8}, {7.5, 11.4}, {10.1, 8.8}}));
    return drawing;
}

SymbolDrawing checkmark()
{
    SymbolDrawing drawing{{10, 11}, {}, {}, roundPen(1.5)};
    drawing.stroked.addPolygon(QPolygonF({{1.4, 6.2}, {4, 9}, {8.6, 2}}));
    return drawing;
}

} // namespace

SymbolDrawing symbolDrawing(const QString &name)
{
    static const QHash<QString, SymbolDrawing> drawings{
        {QStringLiteral("app.dashed"), appDashed()},
        {QStringLiteral("mic.fill"), micFill()},
        {QStringLiteral("dot.radiowaves.left.and.right"), dotRadiowaves()},
        {QStringLiteral("arrow.clockwise"), arrowClockwise()},
        {QStringLiteral("play.fill"), playFill()},
        {QStringLiteral("stop.fill"), stopFill()},
        {QStringLiteral("chevron.up.chevron.down"), chevronUpDown()},
        {QStringLiteral("checkmark"), checkmark()},
    };
    return drawings.value(name);
}

} // namespace tolvenary
