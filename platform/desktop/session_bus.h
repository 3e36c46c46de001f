#pragma once

#include <QString>
#include <chrono>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>

class QDBusConnection;

namespace tolvenary
{

/// The address of the session bus that the environment names; empty when there is none. Never starts one: a bus
/// without the session's services answers nothing.
QString sessionBusAddress();

/// A connection of our own to a message bus, closed with this object. Thread: main.
///
/// Qt's own connection to a bus waits for the bus's greeting on the calling thread, for up to 25 s, and ends the
/// program when the greeting fails. So this connects as if to a peer, which waits for nobody, and does the greeting
/// itself.
class SessionBus
{
  public:
    explicit SessionBus(const QString &address);
    ~SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;

    /// Await it before any call. False when there is no bus, or it does not greet us within `limit`.
    QCoro::Task<bool> greet(std::chrono::milliseconds limit);

    const QDBusConnection &connection() const { return *m_connection; }

    /// Our name on the bus, after the greeting.
    const QString &uniqueName() const { return m_uniqueName; }

  private:
    QString m_name;
    std::unique_ptr<QDBusConnection> m_connection;
    QString m_uniqueName;
};

} // namespace tolvenary
