#include "ui/application_rows.h"

#include <QVariantMap>

namespace tolvenary
{

namespace
{

PickerModel::Row rowOf(const QVariantMap &application)
{
    const QVariant process = application.value(QStringLiteral("processID"));
    const QString name = application.value(QStringLiteral("applicationName")).toString();
    const QString identifier = application.value(QStringLiteral("bundleIdentifier")).toString();
    return {process.toString(), process, name.isEmpty() ? identifier : name};
}

} // namespace

ApplicationRows::ApplicationRows(QObject *parent) : PickerModel(parent)
{
    rebuild();
}

void ApplicationRows::setPlaceholder(const QString &placeholder)
{
    if (placeholder == m_placeholder)
        return;
    m_placeholder = placeholder;
    Q_EMIT placeholderChanged();
    rebuild();
}

void ApplicationRows::setApplications(const QVariantList &applications)
{
    m_applications = applications;
    Q_EMIT applicationsChanged();
    rebuild();
}

void ApplicationRows::rebuild()
{
    std::vector<Row> rows{{QString(), QVariant(), m_placeholder}};
    for (const QVariant &application : m_applications)
        rows.push_back(rowOf(application.toMap()));
    takeOver(std::move(rows));
}

// No selection is the placeholder's identity: the empty text.
std::optional<QString> ApplicationRows::identityOf(const QVariant &selection) const
{
    return selection.toString();
}

} // namespace tolvenary
