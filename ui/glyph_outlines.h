#pragma once

#include <QPainter>
#include <QTextLayout>

namespace tolvenary
{

/// Draws a line of text by the outlines of its letters, in the painter's pen colour, its baseline starting at
/// `baseline`. QPainter's own letters have thickened stems where a font has PostScript outlines, as the scene graph's
/// have not; side by side the two look like different weights. Pictures in place of letters are drawn as they are.
void drawOutlines(QPainter &painter, const QTextLine &line, const QPointF &baseline);

} // namespace tolvenary
