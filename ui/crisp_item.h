#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QPainter;

namespace tolvenary
{

/// An item drawn by a painter into an image that lies exactly on the pixels of the screen, at every scale factor, with
/// room around its box for what reaches outside it; of the image only what is not clear is kept. Works with every scene
/// graph back end; drawn again only when something of it changed. Thread: paint() runs on the scene graph's thread
/// while the main thread waits.
class CrispItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit CrispItem(QQuickItem *parent = nullptr);

  protected:
    /// Draws in points, with the origin at the top-left corner of the item's box.
    virtual void paint(QPainter &painter) const = 0;

    /// How far the drawing reaches outside the box, in points.
    virtual qreal bleed() const { return 0; }

    /// Whether the drawing leaves no pixel of the box clear: what lies behind it is then not drawn at all.
    virtual bool isOpaque() const { return false; }

    /// What the subclass calls when one of its own properties changed.
    void repaint();

    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

  private:
    /// The pixels that the box takes up, with its top-left corner on a whole one, and what they were made from. The
    /// same again needs no new drawing.
    struct Placement {
        QSize box;
        QPointF shift; ///< from the item's own corner to the pixels', in points
        int margin = 0;
        qreal scale = 0;

        friend bool operator==(const Placement &, const Placement &) = default;
    };

    Placement placement() const;
    QImage draw(const Placement &placement) const;

    Placement m_drawn;
    bool m_dirty = true;
    QMetaObject::Connection m_windowWidth;
    QMetaObject::Connection m_windowHeight;
};

} // namespace tolvenary
