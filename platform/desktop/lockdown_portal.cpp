#include "platform/desktop/lockdown_portal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <qcoro/qcorodbuspendingreply.h>

namespace tolvenary
{

QCoro::Task<bool> isMicrophoneLockedDown(QDBusConnection connection, QString backend, std::chrono::milliseconds limit)
{
    if (backend.isEmpty())
        co_return false;
    auto call =
        QDBusMessage::createMethodCall(backend, QStringLiteral("/org/freedesktop/portal/desktop"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setArguments({QStringLiteral("org.freedesktop.impl.portal.Lockdown"), QStringLiteral("disable-microphone")});
    const QDBusPendingReply<QDBusVariant> reply = connection.asyncCall(call, static_cast<int>(limit.count()));
    co_await reply;
    co_return !reply.isError() && reply.value().variant().toBool();
}

} // namespace tolvenary
