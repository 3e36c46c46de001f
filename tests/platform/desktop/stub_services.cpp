#include "tests/platform/desktop/stub_services.h"

namespace tolvenary
{

StubService::StubService(PrivateSession &session, const QString &busName, const QString &path)
    : m_session(session), m_connection(QStringLiteral("stub ") + busName), m_path(path)
{
    auto connection = m_session.connect(m_connection);
    m_isThere =
        connection.registerVirtualObject(path, this, QDBusConnection::SubPath) && connection.registerService(busName);
}

bool StubService::handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/)
{
    message.setDelayedReply(true);
    m_calls.push_back({message.member(), message.arguments(), message});
    return true;
}

void StubService::answer(const Call &call, const QVariantList &results)
{
    QDBusConnection(m_connection).send(call.message.createReply(results));
}

void StubService::signal(const QString &interface, const QString &member, const QVariantList &arguments)
{
    auto message = QDBusMessage::createSignal(m_path, interface, member);
    message.setArguments(arguments);
    QDBusConnection(m_connection).send(message);
}

void StubService::vanish()
{
    m_session.disconnect(m_connection);
}

} // namespace tolvenary
