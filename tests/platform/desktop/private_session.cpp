#include "tests/platform/desktop/private_session.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QProcessEnvironment>

namespace tolvenary
{

namespace
{

constexpr auto *storeName = "org.freedesktop.impl.portal.PermissionStore";

std::string configuration(const std::filesystem::path &folder)
{
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
           "<busconfig><type>session</type><listen>unix:path=" +
           (folder / "bus").string() + "</listen><servicedir>" + (folder / "services").string() +
           "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
}

QDBusMessage storeCall(const char *method, const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(QString::fromLatin1(storeName),
                                               QStringLiteral("/org/freedesktop/impl/portal/PermissionStore"),
                                               QString::fromLatin1(storeName), QString::fromLatin1(method));
    call.setArguments(arguments);
    return call;
}

void setVariable(const char *name, const std::string &value)
{
    qputenv(name, QByteArray::fromStdString(value));
}

} // namespace

PrivateSession::PrivateSession(Store store)
{
    const auto &home = m_folder.path();
    setVariable("HOME", home);
    setVariable("XDG_CONFIG_HOME", home / "config");
    setVariable("XDG_CONFIG_DIRS", home / "etc");
    setVariable("XDG_DATA_HOME", home / "data");
    setVariable("XDG_CACHE_HOME", home / "cache");
    setVariable("XDG_STATE_HOME", home / "state");
    setVariable("XDG_RUNTIME_DIR", home);
    setVariable("XDG_DATA_DIRS", home / "share");
    setVariable("GSETTINGS_BACKEND", "memory");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");

    std::filesystem::create_directories(home / "services");
    const auto service = QString::fromLatin1(storeName) + QStringLiteral(".service");
    const auto installed = QStringLiteral("/usr/share/dbus-1/services/") + service;
    if (store == Store::installed &&
        !QFile::copy(installed, QString::fromStdString(home / "services" / service.toStdString())))
        m_problem = QStringLiteral("no permission store installed (package xdg-desktop-portal)");
    m_folder.write("bus.conf", configuration(home));
    start();
}

void PrivateSession::start()
{
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--nofork"), QStringLiteral("--print-address=1"),
                 QStringLiteral("--config-file=") + QString::fromStdString(m_folder.path() / "bus.conf")});
    while (m_address.isEmpty() && m_bus.waitForReadyRead(20000)) {
        if (m_bus.canReadLine())
            m_address = QString::fromUtf8(m_bus.readLine()).trimmed();
    }
    if (m_address.isEmpty())
        m_problem = QStringLiteral("no bus (package dbus-daemon): ") + m_bus.errorString() +
                    QString::fromUtf8(m_bus.readAllStandardError());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

PrivateSession::~PrivateSession()
{
    for (const auto &name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    m_bus.terminate();
    if (m_bus.state() != QProcess::NotRunning && !m_bus.waitForFinished(20000)) {
        m_bus.kill();
        m_bus.waitForFinished();
    }
}

testing::AssertionResult PrivateSession::isReady() const
{
    if (m_problem.isEmpty())
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << m_problem.toStdString();
}

QDBusConnection PrivateSession::connect(const QString &name)
{
    m_connections.push_back(name);
    return QDBusConnection::connectToBus(m_address, name);
}

void PrivateSession::disconnect(const QString &name)
{
    QDBusConnection::disconnectFromBus(name);
}

void PrivateSession::setPermission(const QString &application, const QString &permission)
{
    const auto reply =
        connect(QStringLiteral("settings"))
            .call(storeCall("SetPermission", {QStringLiteral("devices"), true, QStringLiteral("microphone"),
                                              application, QStringList(permission)}));
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
}

QStringList PrivateSession::permission(const QString &application)
{
    const QDBusReply<QStringList> reply =
        connect(QStringLiteral("settings"))
            .call(storeCall("GetPermission", {QStringLiteral("devices"), QStringLiteral("microphone"), application}));
    return reply.value();
}

} // namespace tolvenary
