#pragma once

#include "ui/picker_model.h"

#include <QVariantList>

namespace tolvenary
{

/// The rows of the device picker: one per device in the order given, under its name. There is no row for no device.
/// Thread: main.
class DeviceRows : public tolvenary::PickerModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList devices READ devices WRITE setDevices NOTIFY devicesChanged FINAL)

  public:
    explicit DeviceRows(QObject *parent = nullptr);

    QVariantList devices() const { return m_devices; }
    void setDevices(const QVariantList &devices);

  Q_SIGNALS:
    void devicesChanged();

  protected:
    std::optional<QString> identityOf(const QVariant &selection) const override;

  private:
    QVariantList m_devices;
};

} // namespace tolvenary
