#include "ui/symbol.h"

#include "ui/symbol_drawings.h"

#include <QPainter>

namespace tolvenary
{

Symbol::Symbol(QQuickItem *parent) : CrispItem(parent)
{
    connect(this, &Symbol::nameChanged, this, &Symbol::repaint);
    connect(this, &Symbol::colorsChanged, this, &Symbol::repaint);
}

void Symbol::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    const QSizeF box = symbolDrawing(name).box;
    setImplicitSize(box.width(), box.height());
    Q_EMIT nameChanged();
}

void Symbol::paint(QPainter &painter) const
{
    const SymbolDrawing drawing = symbolDrawing(m_name);
    if (drawing.box.isEmpty() || m_colors.isEmpty())
        return;
    painter.scale(width() / drawing.box.width(), height() / drawing.box.height());
    const QBrush paint = brush();
    painter.fillPath(drawing.filled, paint);
    QPen pen = drawing.pen;
    pen.setBrush(paint);
    painter.strokePath(drawing.stroked, pen);
}

QBrush Symbol::brush() const
{
    const QColor leading = m_colors.first().value<QColor>();
    if (m_colors.size() == 1)
        return leading;
    const qreal end = implicitWidth();
    QLinearGradient gradient(m_mirrored ? end : 0, 0, m_mirrored ? 0 : end, 0);
    gradient.setColorAt(0, leading);
    gradient.setColorAt(1, m_colors.last().value<QColor>());
    return gradient;
}

} // namespace tolvenary
