#pragma once

#include <QPainterPath>
#include <QRectF>

namespace tolvenary
{

/// The outline of a rectangle whose corners ease into its sides instead of starting with a jump of curvature. Where a
/// side is too short for the full easing, the easing is shortened; where it is too short for the radius, the radius.
QPainterPath continuousRoundedRectangle(const QRectF &rectangle, qreal radius);

} // namespace tolvenary
