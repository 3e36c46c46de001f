#include "ui/device_rows.h"

#include <QVariantMap>

namespace tolvenary
{

DeviceRows::DeviceRows(QObject *parent) : PickerModel(parent) {}

void DeviceRows::setDevices(const QVariantList &devices)
{
    m_devices = devices;
    Q_EMIT devicesChanged();
    std::vector<Row> rows;
    for (const QVariant &device : m_devices) {
        const QVariantMap fields = device.toMap();
        rows.push_back(
            {fields.value(QStringLiteral("id")).toString(), device, fields.value(QStringLiteral("name")).toString()});
    }
    takeOver(std::move(rows));
}

// A device that has another name by now is another choice: the one that was made is kept as it was, and to choose the
// row again is how to take the new name over.
std::optional<QString> DeviceRows::identityOf(const QVariant &selection) const
{
    const QVariantMap chosen = selection.toMap();
    for (const QVariant &device : m_devices)
        if (device.toMap() == chosen)
            return chosen.value(QStringLiteral("id")).toString();
    return std::nullopt;
}

} // namespace tolvenary
