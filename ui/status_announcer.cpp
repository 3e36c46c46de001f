#include "ui/status_announcer.h"

#include <QAccessible>
#include <QRegularExpression>

#include <utility>

namespace tolvenary
{

QString kindOfStatus(const QString &status)
{
    // A number within a word, as in a device's name, is part of what is told.
    static const QRegularExpression count(QStringLiteral("\\b\\d+\\b"));
    return QString(status).replace(count, QStringLiteral("0"));
}

void StatusAnnouncer::setStatus(const QString &status)
{
    if (m_kind && status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
    const QString kind = kindOfStatus(status);
    const bool isFirst = !m_kind;
    if (std::exchange(m_kind, kind) == kind || isFirst)
        return;
    // On its own turn: by then the speaker shows the status, and of several in a row the last is spoken.
    if (!std::exchange(m_due, true))
        QMetaObject::invokeMethod(this, &StatusAnnouncer::announce, Qt::QueuedConnection);
}

void StatusAnnouncer::announce()
{
    m_due = false;
    if (!m_speaker || m_status.isEmpty())
        return;
    QAccessibleEvent event(m_speaker, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

} // namespace tolvenary
