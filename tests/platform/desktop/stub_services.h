#pragma once

#include "tests/platform/desktop/private_session.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantList>
#include <vector>

namespace tolvenary
{

/// A service that takes every call and answers none until it is told to.
class StubService : public QDBusVirtualObject
{
  public:
    /// The call may have been answered; it is kept all the same.
    struct Call {
        QString member;
        QVariantList arguments;
        QDBusMessage message;
    };

    StubService(PrivateSession &session, const QString &busName, const QString &path);

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

    /// Whether the bus knows the service.
    bool isThere() const { return m_isThere; }

    const std::vector<Call> &calls() const { return m_calls; }

    void answer(const Call &call, const QVariantList &results);

    /// Sends a signal of its object.
    void signal(const QString &interface, const QString &member, const QVariantList &arguments);

    /// Leaves the bus, as a process that ends does.
    void vanish();

  private:
    PrivateSession &m_session;
    QString m_connection;
    QString m_path;
    bool m_isThere = false;
    std::vector<Call> m_calls;
};

} // namespace tolvenary
