#pragma once

#include <QPainterPath>
#include <QPen>
#include <QSizeF>
#include <QString>

namespace tolvenary
{

/// What one symbol is made of, in the points of its box.
struct SymbolDrawing {
    QSizeF box;
    QPainterPath filled;
    QPainterPath stroked;
    QPen pen = QPen(Qt::NoPen);
};

/// The drawing of that name; an empty box for a name that is not known.
SymbolDrawing symbolDrawing(const QString &name);

} // namespace tolvenary
