#include "ui/crisp_item.h"

#include "ui/ink.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QtMath>

namespace tolvenary
{

CrispItem::CrispItem(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void CrispItem::repaint()
{
    m_dirty = true;
    update();
}

void CrispItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void CrispItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    if (change == ItemSceneChange) {
        // A window of another size moves what is centred in it, perhaps by a part of a pixel.
        disconnect(m_windowWidth);
        disconnect(m_windowHeight);
        if (data.window) {
            m_windowWidth = connect(data.window, &QWindow::widthChanged, this, &QQuickItem::update);
            m_windowHeight = connect(data.window, &QWindow::heightChanged, this, &QQuickItem::update);
        }
        m_dirty = true;
    }
    QQuickItem::itemChange(change, data);
}

QSGNode *CrispItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    const Placement wanted = placement();
    if (wanted.box.isEmpty()) {
        delete node;
        m_dirty = true;
        return nullptr;
    }
    auto *image = static_cast<QSGImageNode *>(node);
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Linear);
        m_dirty = true;
    }
    if (m_dirty || wanted != m_drawn) {
        const QImage drawn = draw(wanted);
        const QRect ink = isOpaque() ? drawn.rect() : inkOf(drawn);
        // A copy also where nothing is cut off: an image keeps the engine that painted it, which takes kilobytes.
        image->setTexture(window()->createTextureFromImage(
            drawn.copy(ink), isOpaque() ? QQuickWindow::TextureIsOpaque : QQuickWindow::TextureHasAlphaChannel));
        const QRectF pixels = ink.translated(-wanted.margin, -wanted.margin);
        image->setRect(QRectF(pixels.topLeft() / wanted.scale + wanted.shift, pixels.size() / wanted.scale));
        m_drawn = wanted;
        m_dirty = false;
    }
    return image;
}

CrispItem::Placement CrispItem::placement() const
{
    const qreal scale = window()->effectiveDevicePixelRatio();
    const QPointF corner = mapToScene(QPointF(0, 0)) * scale;
    const QPoint first(qRound(corner.x()), qRound(corner.y()));
    const QPoint last(qRound(corner.x() + width() * scale), qRound(corner.y() + height() * scale));
    return {QSize(last.x() - first.x(), last.y() - first.y()), (first - corner) / scale, qCeil(bleed() * scale), scale};
}

QImage CrispItem::draw(const Placement &placement) const
{
    const QSize margins(2 * placement.margin, 2 * placement.margin);
    QImage image(placement.box + margins, isOpaque() ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (!isOpaque())
        image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(placement.margin, placement.margin);
    painter.scale(placement.box.width() / width(), placement.box.height() / height());
    paint(painter);
    return image;
}

} // namespace tolvenary
