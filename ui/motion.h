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
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused NOTIFY pausedChanged FINAL)

  public:
    explicit Motion(QObject *parent = nullptr) : QObject(parent) {}

    /// True for a user who wants nothing to move that need not: the stars rest, and what is pressed changes at once.
    bool isReduced() const { return m_reduced; }
    void setReduced(bool reduced);

    /// True while nothing of the window can be seen: what moves without end stands still.
    bool isPaused() const { return m_paused; }
    void setPaused(bool paused);

  Q_SIGNALS:
    void reducedChanged();
    void pausedChanged();

  private:
    bool m_reduced = false;
    bool m_paused = false;
};

} // namespace tolvenary
