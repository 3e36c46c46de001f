#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// How much of the panel may move. The application sets it from what the desktop says of its user. Thread: main.
class Motion : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool reduced READ isReduced WRITE setReduced NOTIFY reducedChanged FINAL)

  public:
    explicit Motion(QObject *parent = nullptr) : QObject(parent) {}

    /// True for a user who wants nothing to move that need not: the stars rest, and what is pressed changes at once.
    bool isReduced() const { return m_reduced; }
    void setReduced(bool reduced);

  signals:
    void reducedChanged();

  private:
    bool m_reduced = false;
};

} // namespace tolvenary
