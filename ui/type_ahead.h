#pragma once

#include "ui/picker_model.h"

#include <QString>
#include <QTimer>

namespace tolvenary
{

/// Finds rows by what is typed. Letters typed soon after one another are one beginning; the same letter again and again
/// goes from one row to the next. Thread: main.
class TypeAhead : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tolvenary::PickerModel *model MEMBER m_model NOTIFY modelChanged FINAL)

  public:
    explicit TypeAhead(QObject *parent = nullptr);

    /// The row that typing `letter` leads to from row `from`, or `from` when nothing begins so.
    Q_INVOKABLE int rowFor(const QString &letter, int from);

    /// True for what is a letter to search by, false for keys that mean something else.
    Q_INVOKABLE bool isLetter(const QString &text) const;

  Q_SIGNALS:
    void modelChanged();

  private:
    PickerModel *m_model = nullptr;
    QString m_typed;
    QTimer m_forget;
};

} // namespace tolvenary
