#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace tolvenary
{

/// What a status tells, apart from the counts in it: two that differ in nothing but whole numbers are of one kind.
QString kindOfStatus(const QString &status);

/// Lets assistive tools speak a status when another kind of it has come, and not at each of its counts. The item that
/// shows the status is the speaker: a notification, which tools read out whenever they are told that it shows. Thread:
/// main.
class StatusAnnouncer : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged FINAL)
    Q_PROPERTY(QQuickItem *speaker MEMBER m_speaker NOTIFY speakerChanged FINAL)

  public:
    explicit StatusAnnouncer(QObject *parent = nullptr) : QObject(parent) {}

    QString status() const { return m_status; }

    /// The first status comes with the window, where the toolkit tells of all that shows. An empty one is no news.
    void setStatus(const QString &status);

  Q_SIGNALS:
    void statusChanged();
    void speakerChanged();

  private:
    void announce();

    QString m_status;
    std::optional<QString> m_kind;
    QPointer<QQuickItem> m_speaker;
    bool m_due = false;
};

} // namespace tolvenary
