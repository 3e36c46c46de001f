#include "platform/desktop/permission_store.h"

#include "platform/desktop/application_id.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <qcoro/qcorodbuspendingreply.h>

namespace tolvenary
{

namespace
{

QDBusMessage storeCall(const QString &method, const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.impl.portal.PermissionStore"),
                                               QStringLiteral("/org/freedesktop/impl/portal/PermissionStore"),
                                               QStringLiteral("org.freedesktop.impl.portal.PermissionStore"), method);
    call.setArguments(arguments);
    return call;
}

QString table()
{
    return QStringLiteral("devices");
}

QString entry()
{
    return QStringLiteral("microphone");
}

} // namespace

PermissionStore::PermissionStore(const QDBusConnection &connection)
    : m_connection(std::make_unique<QDBusConnection>(connection))
{
}

PermissionStore::~PermissionStore() = default;

QCoro::Task<QStringList> PermissionStore::microphonePermission(std::chrono::milliseconds limit) const
{
    const auto call = storeCall(QStringLiteral("GetPermission"), {table(), entry(), applicationID()});
    const QDBusPendingReply<QStringList> reply = m_connection->asyncCall(call, static_cast<int>(limit.count()));
    co_await reply;
    co_return reply.isError() ? QStringList() : reply.value();
}

QCoro::Task<> PermissionStore::setMicrophonePermission(QString permission, std::chrono::milliseconds limit) const
{
    const auto call =
        storeCall(QStringLiteral("SetPermission"), {table(), true, entry(), applicationID(), QStringList(permission)});
    const QDBusPendingReply<> reply = m_connection->asyncCall(call, static_cast<int>(limit.count()));
    co_await reply;
}

} // namespace tolvenary
