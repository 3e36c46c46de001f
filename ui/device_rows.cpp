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

std::optional<QString> DeviceRows::identityOf(const QVariant &selection) const
{
    const QVariant id = selection.toMap().value(QStringLiteral("id"));
    return id.isValid() ? std::optional(id.toString()) : std::nullopt;
}

} // namespace tolvenary
