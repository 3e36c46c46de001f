#pragma once

#include "tests/ui/support/stage_window.h"

#include <QAccessible>
#include <QString>
#include <QStringList>

#include <vector>

namespace tolvenary::test
{

/// The panel as assistive tools meet it.
class AccessiblePanel
{
  public:
    explicit AccessiblePanel(StageWindow &shown) : m_shown(shown) {}

    /// All that shows, parents before children.
    std::vector<QAccessibleInterface *> elements() const;

    /// The element of that role and name which shows; null if there is none.
    QAccessibleInterface *find(QAccessible::Role role, const QString &name) const;

    /// The names of all elements of that role which show.
    QStringList names(QAccessible::Role role) const;

    static bool act(QAccessibleInterface &element, const QString &action);

  private:
    StageWindow &m_shown;
};

/// What assistive tools are told to speak, from its making on. There is one at a time.
class Announcements
{
  public:
    Announcements();
    ~Announcements();
    Announcements(const Announcements &) = delete;
    Announcements &operator=(const Announcements &) = delete;

    /// The names that the speakers had when they spoke.
    QStringList taken();
};

} // namespace tolvenary::test
