#include "platform/desktop/session_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QUuid>
#include <qcoro/qcorodbuspendingreply.h>

namespace tolvenary
{

namespace
{

QDBusConnection connectTo(const QString &address, const QString &name)
{
    return address.isEmpty() ? QDBusConnection(name) : QDBusConnection::connectToPeer(address, name);
}

} // namespace

QString sessionBusAddress()
{
    if (auto address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"); !address.isEmpty())
        return address;
    const auto runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QFileInfo socket(runtime + QStringLiteral("/bus"));
    return !runtime.isEmpty() && socket.exists() ? QStringLiteral("unix:path=") + socket.filePath() : QString();
}

SessionBus::SessionBus(const QString &address)
    : m_name(QStringLiteral("tolvenary-") + QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_connection(std::make_unique<QDBusConnection>(connectTo(address, m_name)))
{
}

SessionBus::~SessionBus()
{
    QDBusConnection::disconnectFromPeer(m_name);
}

QCoro::Task<bool> SessionBus::greet(std::chrono::milliseconds limit)
{
    if (!m_connection->isConnected())
        co_return false;
    const auto hello =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("Hello"));
    const QDBusPendingReply<QString> reply = m_connection->asyncCall(hello, static_cast<int>(limit.count()));
    co_await reply;
    m_uniqueName = reply.isError() ? QString() : reply.value();
    co_return !m_uniqueName.isEmpty();
}

} // namespace tolvenary
