#include "ui/continuous_corners.h"

#include <QTransform>
#include <QtMath>

#include <algorithm>

namespace tolvenary
{

namespace
{

/// One corner: a short curve in, a circular arc, a short curve out, as lengths along the two sides.
struct Corner {
    qreal radius; ///< of the arc in the middle
    qreal reach;  ///< how far the corner takes up of each side
    qreal arc;    ///< degrees that the arc turns
    qreal a, b, c, d;
};

Corner makeCorner(qreal radius, qreal budget)
{
    constexpr qreal fullSmoothing = 0.6;
    Corner corner{};
    corner.radius = std::min(radius, budget);
    if (corner.radius <= 0)
        return corner;
    const qreal smoothing = std::clamp(budget / corner.radius - 1, 0.0, fullSmoothing);
    corner.reach = std::min((1 + smoothing) * corner.radius, budget);
    corner.arc = 90 * (1 - smoothing);
    const qreal chord = qSin(qDegreesToRadians(corner.arc / 2)) * corner.radius * M_SQRT2;
    const qreal lean = qDegreesToRadians(45 * smoothing);
    corner.c = corner.radius * qTan(qDegreesToRadians((90 - corner.arc) / 4)) * qCos(lean);
    corner.d = corner.c * qTan(lean);
    corner.b = (corner.reach - chord - corner.c - corner.d) / 3;
    corner.a = 2 * corner.b;
    return corner;
}

/// Adds the corner whose point is at the origin, coming along the x axis and leaving along the y axis.
void addCorner(QPainterPath &path, const Corner &corner, const QTransform &place)
{
    const auto at = [&](qreal x, qreal y) { return place.map(QPointF(x, y)); };
    const qreal start = -corner.reach;
    const qreal run = corner.a + corner.b + corner.c;
    path.lineTo(at(start, 0));
    path.cubicTo(at(start + corner.a, 0), at(start + corner.a + corner.b, 0), at(start + run, corner.d));

    // The arc as one cubic: it never turns by more than 90 degrees.
    const qreal half = qDegreesToRadians(corner.arc / 2);
    const qreal pull = 4.0 / 3 * qTan(half / 2) * corner.radius;
    const qreal lean = qDegreesToRadians((90 - corner.arc) / 2);
    const QPointF from(start + run, corner.d);
    const QPointF to(-corner.d, -start - run);
    const QPointF out(qCos(lean) * pull, qSin(lean) * pull);
    const QPointF in(qSin(lean) * pull, qCos(lean) * pull);
    path.cubicTo(place.map(from + out), place.map(to - in), place.map(to));
    path.cubicTo(at(0, -start - corner.a - corner.b), at(0, -start - corner.a), at(0, -start));
}

} // namespace

QPainterPath continuousRoundedRectangle(const QRectF &rectangle, qreal radius)
{
    const Corner corner = makeCorner(radius, std::min(rectangle.width(), rectangle.height()) / 2);
    QPainterPath path;
    if (corner.radius <= 0) {
        path.addRect(rectangle);
        return path;
    }
    const QPointF points[] = {rectangle.topRight(), rectangle.bottomRight(), rectangle.bottomLeft(),
                              rectangle.topLeft()};
    path.moveTo(rectangle.left() + corner.reach, rectangle.top());
    for (int turn = 0; turn < 4; ++turn) {
        QTransform place = QTransform::fromTranslate(points[turn].x(), points[turn].y());
        place.rotate(90.0 * turn);
        addCorner(path, corner, place);
    }
    path.closeSubpath();
    return path;
}

} // namespace tolvenary
