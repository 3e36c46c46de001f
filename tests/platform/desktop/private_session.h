#pragma once

#include "tests/platform/desktop/temporary_folder.h"

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

namespace tolvenary
{

/// A session bus of a test's own, with a home of its own, which the environment names while it lives. Services find
/// nothing of the real session and leave nothing behind.
class PrivateSession
{
  public:
    enum class Store { installed, absent };

    explicit PrivateSession(Store store);
    ~PrivateSession();
    PrivateSession(const PrivateSession &) = delete;
    PrivateSession &operator=(const PrivateSession &) = delete;

    /// Says why the session is not there.
    testing::AssertionResult isReady() const;

    /// A connection of the test's own, closed when the session ends.
    QDBusConnection connect(const QString &name);

    /// Closes such a connection, as a service that dies closes it.
    void disconnect(const QString &name);

    void setPermission(const QString &application, const QString &permission);

    /// What the store says of an application; empty when nothing.
    QStringList permission(const QString &application);

    const TemporaryFolder &folder() const { return m_folder; }

  private:
    void start();

    TemporaryFolder m_folder;
    QProcess m_bus;
    QString m_address;
    QString m_problem;
    QStringList m_connections;
};

} // namespace tolvenary
