// The published fields as the panel's language sees them: rows of named values, and no value for none.

#include "core/mix_coordinator.h"

namespace tolvenary
{

namespace
{

QVariantMap row(const BlackHoleDevice &device)
{
    return {
        {"id", device.id}, {"name", QString::fromStdString(device.name)}, {"uid", QString::fromStdString(device.uid)}};
}

} // namespace

QVariantList MixCoordinator::availableAppRows() const
{
    QVariantList rows;
    for (const SCRunningApplication &app : m_availableApps) {
        rows.push_back(QVariantMap{{"applicationName", QString::fromStdString(app.applicationName)},
                                   {"bundleIdentifier", QString::fromStdString(app.bundleIdentifier)},
                                   {"processID", app.processID}});
    }
    return rows;
}

QVariant MixCoordinator::selectedAppIDValue() const
{
    return m_selectedAppID ? QVariant(*m_selectedAppID) : QVariant();
}

void MixCoordinator::setSelectedAppIDValue(const QVariant &processID)
{
    bool isNumber = false;
    const int value = processID.toInt(&isNumber);
    setSelectedAppID(isNumber && !processID.isNull() ? std::optional<std::int32_t>(value) : std::nullopt);
}

void MixCoordinator::setSelectedAppID(std::optional<std::int32_t> processID)
{
    publish(m_selectedAppID, processID, &MixCoordinator::selectedAppIDChanged);
}

QVariantList MixCoordinator::blackHoleDeviceRows() const
{
    QVariantList rows;
    for (const BlackHoleDevice &device : m_blackHoleDevices)
        rows.push_back(row(device));
    return rows;
}

QVariant MixCoordinator::selectedBlackHoleRow() const
{
    return m_selectedBlackHole ? QVariant(row(*m_selectedBlackHole)) : QVariant();
}

void MixCoordinator::setSelectedBlackHoleRow(const QVariant &value)
{
    const QVariantMap picked = value.toMap();
    if (picked.isEmpty()) {
        setSelectedBlackHole(std::nullopt);
        return;
    }
    setSelectedBlackHole(BlackHoleDevice{picked.value("id").toUInt(), picked.value("name").toString().toStdString(),
                                         picked.value("uid").toString().toStdString()});
}

void MixCoordinator::setSelectedBlackHole(const std::optional<BlackHoleDevice> &device)
{
    publish(m_selectedBlackHole, device, &MixCoordinator::selectedBlackHoleChanged);
}

} // namespace tolvenary
