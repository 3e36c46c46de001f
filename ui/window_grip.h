#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// A place where the pointer takes hold of the window: anywhere to move it, within `border` of an edge to resize it
/// there. The window manager does the work where there is one; without one the window is moved and resized from here,
/// never below its least size. Thread: main.
class WindowGrip : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal border MEMBER m_border FINAL)
    Q_PROPERTY(bool moves MEMBER m_moves FINAL)

  public:
    explicit WindowGrip(QQuickItem *parent = nullptr);

    bool contains(const QPointF &point) const override;

  protected:
    void hoverMoveEvent(QHoverEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;

  private:
    enum class Hold { none, pressed, begins, drags };

    void begin();
    Qt::Edges edgesAt(const QPointF &point) const;
    bool beginWithWindowManager(Qt::Edges edges);

    qreal m_border = 0;
    bool m_moves = false;
    Hold m_hold = Hold::none;
    Qt::Edges m_edges;
    QPoint m_pressedAt;
    QRect m_geometryAtPress;
};

} // namespace tolvenary
