#pragma once

#include "ui/picker_model.h"

#include <QVariantList>

namespace tolvenary
{

/// The rows of the application picker: first the one that stands for no application, then one per application in the
/// order given, under its name or, where it has none, under its identifier. Thread: main.
class ApplicationRows : public tolvenary::PickerModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString placeholder READ placeholder WRITE setPlaceholder NOTIFY placeholderChanged FINAL)
    Q_PROPERTY(QVariantList applications READ applications WRITE setApplications NOTIFY applicationsChanged FINAL)

  public:
    explicit ApplicationRows(QObject *parent = nullptr);

    QString placeholder() const { return m_placeholder; }
    void setPlaceholder(const QString &placeholder);

    QVariantList applications() const { return m_applications; }
    void setApplications(const QVariantList &applications);

  Q_SIGNALS:
    void placeholderChanged();
    void applicationsChanged();

  protected:
    std::optional<QString> identityOf(const QVariant &selection) const override;

  private:
    void rebuild();

    QString m_placeholder;
    QVariantList m_applications;
};

} // namespace tolvenary
