#include "ui/glass_shape.h"

#include "ui/continuous_corners.h"
#include "ui/gaussian_blur.h"

#include <QPainter>

namespace tolvenary
{

GlassShape::GlassShape(QQuickItem *parent) : CrispItem(parent)
{
    connect(this, &GlassShape::lookChanged, this, &GlassShape::repaint);
}

void GlassShape::paint(QPainter &painter) const
{
    const QPainterPath path = continuousRoundedRectangle(boundingRect(), m_radius);
    if (m_shadowColor.alpha() > 0)
        paintShadow(painter, path);
    if (!m_fill.isEmpty())
        painter.fillPath(path, brush(m_fill));
    if (!m_outline.isEmpty())
        painter.strokePath(path, QPen(brush(m_outline), 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
}

qreal GlassShape::bleed() const
{
    constexpr qreal halfOutline = 1;
    constexpr qreal reachOfBlur = 3;
    return m_shadowColor.alpha() > 0 ? halfOutline + reachOfBlur * m_shadowRadius + qAbs(m_shadowOffset) : halfOutline;
}

QBrush GlassShape::brush(const QVariantList &colors) const
{
    if (colors.size() == 1)
        return colors.first().value<QColor>();
    const QRectF box = boundingRect();
    QLinearGradient gradient(m_mirrored ? box.topRight() : box.topLeft(),
                             m_mirrored ? box.bottomLeft() : box.bottomRight());
    for (qsizetype i = 0; i < colors.size(); ++i)
        gradient.setColorAt(static_cast<qreal>(i) / static_cast<qreal>(colors.size() - 1), colors[i].value<QColor>());
    return gradient;
}

void GlassShape::paintShadow(QPainter &painter, const QPainterPath &path) const
{
    const qreal scale = painter.transform().m11();
    QImage mask(painter.device()->width(), painter.device()->height(), QImage::Format_Alpha8);
    mask.fill(0);
    QPainter onMask(&mask);
    onMask.setRenderHint(QPainter::Antialiasing);
    onMask.setTransform(painter.transform());
    onMask.translate(0, m_shadowOffset);
    onMask.fillPath(path, Qt::black);
    if (!m_outline.isEmpty())
        onMask.strokePath(path, QPen(brush(m_outline), 1));
    onMask.end();

    const QImage shadow = colored(gaussianBlur(mask, m_shadowRadius * scale), m_shadowColor);
    painter.save();
    painter.resetTransform();
    painter.drawImage(0, 0, shadow);
    painter.restore();
}

} // namespace tolvenary
