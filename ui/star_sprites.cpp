#include "ui/star_nodes.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGRenderNode>
#include <QtMath>

#include <memory>

namespace tolvenary
{

namespace
{

/// A star at full opacity on whole pixels, and the place of its first one in points.
struct Sprite {
    QPointF corner;
    QImage image;
};

Sprite makeSprite(const Star &star, const QSizeF &field, qreal scale)
{
    const QPointF center = QPointF(star.x * field.width(), star.y * field.height()) * scale;
    const qreal radius = star.r * scale;
    const QPoint first(qFloor(center.x() - radius), qFloor(center.y() - radius));
    const QPoint last(qCeil(center.x() + radius), qCeil(center.y() + radius));
    QImage image(last.x() - first.x(), last.y() - first.y(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(center - first, radius, radius);
    painter.end();
    image.setDevicePixelRatio(scale);
    // A copy, because an image keeps the engine that painted it: more than all the pixels of these.
    return {QPointF(first) / scale, image.copy()};
}

/// Draws with the renderer's own painter: an image of the whole field would have to be made and blended in every frame.
class SpriteNode : public QSGRenderNode
{
  public:
    explicit SpriteNode(QQuickWindow &window) : m_window(window) {}

    void show(const StarPicture &picture)
    {
        if (picture.stars != m_stars || picture.size != m_size || picture.scale != m_scale)
            makeSprites(picture);
        m_opacities = picture.opacities;
        markDirty(QSGNode::DirtyMaterial);
    }

    void render(const RenderState *state) override
    {
        const QSGRendererInterface *renderer = m_window.rendererInterface();
        auto *painter =
            static_cast<QPainter *>(renderer->getResource(&m_window, QSGRendererInterface::PainterResource));
        if (const QRegion *clip = state->clipRegion(); clip && !clip->isEmpty())
            painter->setClipRegion(*clip, Qt::ReplaceClip);
        painter->setTransform(matrix()->toTransform());
        for (std::size_t i = 0; i < m_sprites.size(); ++i) {
            painter->setOpacity(inheritedOpacity() * m_opacities[i]);
            painter->drawImage(m_sprites[i].corner, m_sprites[i].image);
        }
    }

    RenderingFlags flags() const override { return BoundedRectRendering; }
    QRectF rect() const override { return {QPointF(), m_size}; }

  private:
    void makeSprites(const StarPicture &picture)
    {
        m_stars = picture.stars;
        m_size = picture.size;
        m_scale = picture.scale;
        m_sprites.clear();
        for (const Star &star : m_stars)
            m_sprites.push_back(makeSprite(star, m_size, m_scale));
        markDirty(QSGNode::DirtyGeometry);
    }

    QQuickWindow &m_window;
    std::vector<Star> m_stars;
    QSizeF m_size;
    qreal m_scale = 0;
    std::vector<Sprite> m_sprites;
    std::vector<double> m_opacities;
};

} // namespace

QSGNode *updateStarSprites(QSGNode *node, const StarPicture &picture, QQuickWindow &window)
{
    auto *sprites = static_cast<SpriteNode *>(node);
    if (!sprites)
        sprites = std::make_unique<SpriteNode>(window).release();
    sprites->show(picture);
    return sprites;
}

} // namespace tolvenary
