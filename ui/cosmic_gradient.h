#pragma once

#include "ui/crisp_item.h"

#include <QColor>
#include <QVariantList>

namespace tolvenary
{

/// The dark gradient of the window with its two glows, in the corners where the lines of a text end at the top and
/// begin at the bottom. Thread: main.
class CosmicGradient : public tolvenary::CrispItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList base MEMBER m_base NOTIFY lookChanged FINAL)
    Q_PROPERTY(QColor topGlow MEMBER m_topGlow NOTIFY lookChanged FINAL)
    Q_PROPERTY(QColor bottomGlow MEMBER m_bottomGlow NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal glowStart MEMBER m_glowStart NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal topGlowEnd MEMBER m_topGlowEnd NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal bottomGlowEnd MEMBER m_bottomGlowEnd NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY lookChanged FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY lookChanged FINAL)

  public:
    explicit CosmicGradient(QQuickItem *parent = nullptr);

  Q_SIGNALS:
    void lookChanged();

  protected:
    void paint(QPainter &painter) const override;
    bool isOpaque() const override { return m_cornerRadius <= 0; }

  private:
    QVariantList m_base;
    QColor m_topGlow;
    QColor m_bottomGlow;
    qreal m_glowStart = 0;
    qreal m_topGlowEnd = 1;
    qreal m_bottomGlowEnd = 1;
    qreal m_cornerRadius = 0;
    bool m_mirrored = false;
};

} // namespace tolvenary
