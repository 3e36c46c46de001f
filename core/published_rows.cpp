#include "core/mix_coordinator.h"

namespace tolvenary
{

namespace
{

const QString idKey = QStringLiteral("id");
const QString nameKey = QStringLiteral("name");
const QString uidKey = QStringLiteral("uid");

QVariantMap rowOf(const SCRunningApplication &application)
{
    return {
        {QStringLiteral("applicationName"), QString::fromStdString(application.applicationName)},
        {QStringLiteral("bundleIdentifier"), QString::fromStdString(application.bundleIdentifier)},
        {QStringLiteral("processID"), application.processID},
    };
}

QVariantMap rowOf(const BlackHoleDevice &device)
{
    return {
        {idKey, device.id},
        {nameKey, QString::fromStdString(device.name)},
        {uidKey, QString::fromStdString(device.uid)},
    };
}

template <typename Record> QVariantList rowsOf(const std::vector<Record> &records)
{
    QVariantList rows;
    rows.reserve(static_cast<qsizetype>(records.size()));
    for (const Record &record : records)
        rows.append(rowOf(record));
    return rows;
}

} // namespace

QVariantList MixCoordinator::availableAppRows() const
{
    return rowsOf(m_availableApps);
}

QVariantList MixCoordinator::blackHoleRows() const
{
    return rowsOf(m_blackHoleDevices);
}

QVariant MixCoordinator::selectedAppIDValue() const
{
    return m_selectedAppID ? QVariant(*m_selectedAppID) : QVariant();
}

void MixCoordinator::setSelectedAppIDValue(const QVariant &processID)
{
    bool isNumber = false;
    const int number = processID.toInt(&isNumber);
    setSelectedAppID(isNumber ? std::optional<std::int32_t>(number) : std::nullopt);
}

QVariant MixCoordinator::selectedBlackHoleRow() const
{
    return m_selectedBlackHole ? QVariant(rowOf(*m_selectedBlackHole)) : QVariant();
}

void MixCoordinator::setSelectedBlackHoleRow(const QVariant &row)
{
    const QVariantMap fields = row.toMap();
    if (!fields.contains(idKey))
        return setSelectedBlackHole(std::nullopt);
    setSelectedBlackHole(BlackHoleDevice{fields[idKey].toUInt(), fields[nameKey].toString().toStdString(),
                                         fields[uidKey].toString().toStdString()});
}

} // namespace tolvenary
