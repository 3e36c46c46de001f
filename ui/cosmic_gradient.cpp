#include "ui/cosmic_gradient.h"

#include "ui/continuous_corners.h"

#include <QPainter>

namespace tolvenary
{

namespace
{

/// Full colour up to `start`, from there to nothing at `end`.
QRadialGradient glow(const QPointF &center, const QColor &color, qreal start, qreal end)
{
    QColor clear = color;
    clear.setAlpha(0);
    QRadialGradient gradient(center, end);
    gradient.setColorAt(start / end, color);
    gradient.setColorAt(1, clear);
    return gradient;
}

} // namespace

CosmicGradient::CosmicGradient(QQuickItem *parent) : CrispItem(parent)
{
    connect(this, &CosmicGradient::lookChanged, this, &CosmicGradient::repaint);
}

void CosmicGradient::paint(QPainter &painter) const
{
    const QRectF box = boundingRect();
    const QPointF topLeading = m_mirrored ? box.topRight() : box.topLeft();
    const QPointF topTrailing = m_mirrored ? box.topLeft() : box.topRight();
    const QPointF bottomLeading = m_mirrored ? box.bottomRight() : box.bottomLeft();
    const QPointF bottomTrailing = m_mirrored ? box.bottomLeft() : box.bottomRight();

    QLinearGradient base(topLeading, bottomTrailing);
    for (qsizetype i = 0; i < m_base.size(); ++i)
        base.setColorAt(static_cast<qreal>(i) / static_cast<qreal>(m_base.size() - 1), m_base[i].value<QColor>());

    if (m_cornerRadius > 0)
        painter.setClipPath(continuousRoundedRectangle(box, m_cornerRadius));
    painter.fillRect(box, base);
    painter.fillRect(box, glow(topTrailing, m_topGlow, m_glowStart, m_topGlowEnd));
    painter.fillRect(box, glow(bottomLeading, m_bottomGlow, m_glowStart, m_bottomGlowEnd));
}

} // namespace tolvenary
