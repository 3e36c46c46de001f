#pragma once

#include "ui/crisp_item.h"

#include <QColor>
#include <QVariantList>

namespace tolvenary
{

/// A rectangle with continuous corners: filled, outlined 1 wide on its edge, with a soft shadow or glow behind. Fill
/// and outline take one colour, or several spread from the top-leading to the bottom-trailing corner along the true
/// diagonal. All of it is one image, so a faded shape fades with its shadow as a whole. Thread: main.
class GlassShape : public tolvenary::CrispItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY lookChanged FINAL)
    Q_PROPERTY(QVariantList fill MEMBER m_fill NOTIFY lookChanged FINAL)
    Q_PROPERTY(QVariantList outline MEMBER m_outline NOTIFY lookChanged FINAL)
    Q_PROPERTY(QColor shadowColor MEMBER m_shadowColor NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal shadowRadius MEMBER m_shadowRadius NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal shadowOffset MEMBER m_shadowOffset NOTIFY lookChanged FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY lookChanged FINAL)

  public:
    explicit GlassShape(QQuickItem *parent = nullptr);

  Q_SIGNALS:
    void lookChanged();

  protected:
    void paint(QPainter &painter) const override;
    qreal bleed() const override;

  private:
    QBrush brush(const QVariantList &colors) const;
    void paintShadow(QPainter &painter, const QPainterPath &path) const;

    qreal m_radius = 0;
    QVariantList m_fill;
    QVariantList m_outline;
    QColor m_shadowColor = Qt::transparent;
    qreal m_shadowRadius = 0; ///< the standard deviation of the blur
    qreal m_shadowOffset = 0; ///< downwards
    bool m_mirrored = false;
};

} // namespace tolvenary
