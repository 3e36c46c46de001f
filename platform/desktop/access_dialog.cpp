#include "platform/desktop/access_dialog.h"

#include "platform/desktop/application_id.h"
#include "platform/desktop/session_bus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QUuid>
#include <limits>
#include <qcoro/qcorodbuspendingreply.h>

namespace tolvenary
{

namespace
{

QString translated(const char *text)
{
    return QCoreApplication::translate("AccessDialog", text);
}

/// Where the backend offers the request while the dialog is open; made of our bus name so that no other's is met.
QDBusObjectPath requestPath(const QString &uniqueName)
{
    auto sender = uniqueName;
    sender.remove(QLatin1Char(':'));
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QDBusObjectPath(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/tolvenary_%2")
                               .arg(sender, QUuid::createUuid().toString(QUuid::Id128)));
}

QDBusMessage accessDialogCall(const QString &uniqueName, const QString &backend)
{
    auto call = QDBusMessage::createMethodCall(backend, QStringLiteral("/org/freedesktop/portal/desktop"),
                                               QStringLiteral("org.freedesktop.impl.portal.Access"),
                                               QStringLiteral("AccessDialog"));
    const QVariantMap options = {
        {QStringLiteral("icon"), QStringLiteral("audio-input-microphone-symbolic")},
        {QStringLiteral("deny_label"), translated(QT_TRANSLATE_NOOP("AccessDialog", "Deny"))},
        {QStringLiteral("grant_label"), translated(QT_TRANSLATE_NOOP("AccessDialog", "Allow"))}};
    call.setArguments(
        {QVariant::fromValue(requestPath(uniqueName)), applicationID(), QString(),
         translated(QT_TRANSLATE_NOOP("AccessDialog", "Allow Access to the Microphone?")),
         translated(QT_TRANSLATE_NOOP("AccessDialog", "Tolvenary wants to use your microphone.")),
         translated(QT_TRANSLATE_NOOP("AccessDialog", "You can change this at any time in the privacy settings.")),
         options});
    return call;
}

} // namespace

QCoro::Task<AccessAnswer> askForMicrophone(const SessionBus &bus, QString backend)
{
    constexpr int noTimeLimit = std::numeric_limits<int>::max();
    const QDBusPendingReply<uint, QVariantMap> reply =
        bus.connection().asyncCall(accessDialogCall(bus.uniqueName(), backend), noTimeLimit);
    // The bus answers for a backend that leaves before it has answered.
    co_await reply;
    if (reply.isError())
        co_return AccessAnswer::none;
    switch (reply.argumentAt<0>()) {
    case 0:
        co_return AccessAnswer::granted;
    case 1:
        co_return AccessAnswer::refused;
    default:
        co_return AccessAnswer::none;
    }
}

} // namespace tolvenary
