#pragma once

#include <QColor>
#include <QPoint>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

namespace tolvenary::test
{

/// Where an item of the panel belongs, in points. The item is found by the names on the way to it. A text's box is as
/// wide as its letters.
struct ExpectedBox {
    QStringList path;
    QRectF box;
};

/// The colour of one point of the window.
struct ExpectedColor {
    QPoint point;
    QColor color;
};

std::vector<ExpectedBox> expectedBoxes(const QString &state);
std::vector<ExpectedColor> expectedColors(const QString &state);

} // namespace tolvenary::test
