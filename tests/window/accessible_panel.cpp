#include "tests/window/accessible_panel.h"

#include "tests/core/event_loop.h"

#include <QQuickWindow>

#include <utility>

namespace tolvenary::test
{

namespace
{

// The handler is a plain function: what it is told must lie outside of every object.
QStringList announcements; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void listen(QAccessibleEvent *event)
{
    QAccessibleInterface *speaker = event->accessibleInterface();
    if (event->type() == QAccessible::ObjectShow && speaker && speaker->role() == QAccessible::Notification)
        announcements.append(speaker->text(QAccessible::Name));
}

void collect(QAccessibleInterface *element, std::vector<QAccessibleInterface *> &elements)
{
    if (!element || element->state().invisible)
        return;
    elements.push_back(element);
    for (int i = 0; i < element->childCount(); ++i)
        collect(element->child(i), elements);
}

} // namespace

std::vector<QAccessibleInterface *> AccessiblePanel::elements() const
{
    std::vector<QAccessibleInterface *> elements;
    collect(QAccessible::queryAccessibleInterface(&m_shown.window()), elements);
    return elements;
}

QAccessibleInterface *AccessiblePanel::find(QAccessible::Role role, const QString &name) const
{
    for (QAccessibleInterface *element : elements())
        if (element->role() == role && element->text(QAccessible::Name) == name)
            return element;
    return nullptr;
}

QStringList AccessiblePanel::names(QAccessible::Role role) const
{
    QStringList names;
    for (const QAccessibleInterface *element : elements())
        if (element->role() == role)
            names.append(element->text(QAccessible::Name));
    return names;
}

bool AccessiblePanel::act(QAccessibleInterface &element, const QString &action)
{
    QAccessibleActionInterface *actions = element.actionInterface();
    if (!actions || !actions->actionNames().contains(action))
        return false;
    actions->doAction(action);
    processEvents();
    return true;
}

Announcements::Announcements()
{
    announcements.clear();
    QAccessible::installUpdateHandler(listen);
}

Announcements::~Announcements()
{
    QAccessible::installUpdateHandler(nullptr);
}

QStringList Announcements::taken()
{
    processEvents();
    return std::exchange(announcements, {});
}

} // namespace tolvenary::test
