#include "ui/window_grip.h"

#include <QQuickWindow>

#include <algorithm>

namespace tolvenary
{

namespace
{

/// How far the pointer goes before it drags: a hand that trembles while it clicks does not.
constexpr int leastDrag = 4;

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge))
        return Qt::SizeBDiagCursor;
    if (edges & (Qt::LeftEdge | Qt::RightEdge))
        return Qt::SizeHorCursor;
    return edges ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

/// The window as it is after its edges were dragged by `by`: what is not dragged stays, and so does the least size.
QRect dragged(QRect geometry, Qt::Edges edges, const QPoint &by, const QSize &least)
{
    if (!edges)
        return geometry.translated(by);
    if (edges & Qt::LeftEdge)
        geometry.setLeft(std::min(geometry.left() + by.x(), geometry.right() + 1 - least.width()));
    if (edges & Qt::RightEdge)
        geometry.setRight(std::max(geometry.right() + by.x(), geometry.left() - 1 + least.width()));
    if (edges & Qt::TopEdge)
        geometry.setTop(std::min(geometry.top() + by.y(), geometry.bottom() + 1 - least.height()));
    if (edges & Qt::BottomEdge)
        geometry.setBottom(std::max(geometry.bottom() + by.y(), geometry.top() - 1 + least.height()));
    return geometry;
}

} // namespace

WindowGrip::WindowGrip(QQuickItem *parent) : QQuickItem(parent)
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
}

bool WindowGrip::contains(const QPointF &point) const
{
    return boundingRect().contains(point) && (m_moves || edgesAt(point));
}

void WindowGrip::hoverMoveEvent(QHoverEvent *event)
{
    setCursor(cursorFor(edgesAt(event->position())));
    event->ignore();
}

void WindowGrip::mousePressEvent(QMouseEvent *event)
{
    m_edges = edgesAt(event->position());
    m_pressedAt = event->globalPosition().toPoint();
    m_geometryAtPress = window()->geometry();
    m_hold = Hold::pressed;
}

void WindowGrip::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint by = event->globalPosition().toPoint() - m_pressedAt;
    if (m_hold == Hold::pressed && by.manhattanLength() >= leastDrag) {
        m_hold = Hold::begins;
        QMetaObject::invokeMethod(this, &WindowGrip::begin, Qt::QueuedConnection);
    }
    if (m_hold == Hold::drags)
        window()->setGeometry(dragged(m_geometryAtPress, m_edges, by, window()->minimumSize()));
}

void WindowGrip::mouseReleaseEvent(QMouseEvent *)
{
    m_hold = Hold::none;
}

void WindowGrip::mouseUngrabEvent()
{
    m_hold = Hold::none;
}

/// Runs after all input that has arrived so far: a window manager that is asked when the button is up again would let
/// the window hang on the pointer.
void WindowGrip::begin()
{
    if (m_hold != Hold::begins || !window())
        return;
    m_hold = Hold::drags;
    // The release then goes to the window manager: nothing more is to be expected here.
    if (beginWithWindowManager(m_edges))
        ungrabMouse();
}

Qt::Edges WindowGrip::edgesAt(const QPointF &point) const
{
    const bool fixed = window() && (window()->windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    Qt::Edges edges;
    if (fixed || m_border <= 0)
        return edges;
    edges.setFlag(Qt::LeftEdge, point.x() < m_border);
    edges.setFlag(Qt::RightEdge, point.x() >= width() - m_border);
    edges.setFlag(Qt::TopEdge, point.y() < m_border);
    edges.setFlag(Qt::BottomEdge, point.y() >= height() - m_border);
    return edges;
}

bool WindowGrip::beginWithWindowManager(Qt::Edges edges)
{
    return edges ? window()->startSystemResize(edges) : window()->startSystemMove();
}

} // namespace tolvenary
