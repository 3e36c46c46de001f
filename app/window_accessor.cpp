#include "app/window_accessor.h"

#include <QQuickWindow>

namespace tolvenary
{

WindowAccessor::WindowAccessor(Configure configure, QQuickItem *parent)
    : QQuickItem(parent), m_configure(std::move(configure))
{
    QMetaObject::invokeMethod(this, &WindowAccessor::updateView, Qt::QueuedConnection);
}

void WindowAccessor::updateView()
{
    if (QQuickWindow *host = window())
        m_configure(*host);
}

void WindowAccessor::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange)
        updateView();
}

} // namespace tolvenary
