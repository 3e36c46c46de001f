#include "platform/desktop/portal_motion.h"

#include "platform/desktop/session_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
#include <QPointer>
#include <QStringList>
#include <array>
#include <chrono>
#include <qcoro/qcorodbuspendingreply.h>

namespace tolvenary
{

namespace
{

using namespace std::chrono_literals;
using Namespaces = QMap<QString, QVariantMap>;

/// Nobody waits for the answer, and a portal may have to be started first.
constexpr auto answerLimit = 25s;

constexpr auto *portalName = "org.freedesktop.portal.Desktop";
constexpr auto *portalPath = "/org/freedesktop/portal/desktop";
constexpr auto *settingsInterface = "org.freedesktop.portal.Settings";

bool isOne(const QVariant &value)
{
    return value.toUInt() == 1;
}

bool isFalse(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool && !value.toBool();
}

// Some versions of the portal's back end give a number, others its digits.
bool isZero(const QVariant &value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && number == 0;
}

/// A setting by which a desktop says that its user wants less motion.
struct Setting {
    const char *space;
    const char *key;
    bool (*asksForRest)(const QVariant &value);
};

/// The common one came late (2025), so the desktops' own ones count too.
constexpr std::array settings = {
    Setting{"org.freedesktop.appearance", "reduced-motion", isOne},
    Setting{"org.gnome.desktop.interface", "enable-animations", isFalse},
    Setting{"org.kde.kdeglobals.KDE", "AnimationDurationFactor", isZero},
};

QDBusMessage addMatch()
{
    auto call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("AddMatch"));
    call.setArguments({QStringLiteral("type='signal',sender='%1',interface='%2',member='SettingChanged'")
                           .arg(QLatin1String(portalName), QLatin1String(settingsInterface))});
    return call;
}

QDBusMessage readAll()
{
    auto call = QDBusMessage::createMethodCall(QLatin1String(portalName), QLatin1String(portalPath),
                                               QLatin1String(settingsInterface), QStringLiteral("ReadAll"));
    QStringList spaces;
    for (const Setting &setting : settings)
        spaces.append(QLatin1String(setting.space));
    call.setArguments({spaces});
    return call;
}

} // namespace

PortalMotion::PortalMotion(const QString &busAddress, std::function<void()> changed) : m_changed(std::move(changed))
{
    qDBusRegisterMetaType<Namespaces>();
    follow(std::make_shared<SessionBus>(busAddress));
}

PortalMotion::~PortalMotion() = default;

std::optional<bool> PortalMotion::isReduced() const
{
    return m_answered ? std::optional(!m_asking.empty()) : std::nullopt;
}

void PortalMotion::settingChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.size() != 3)
        return;
    take(arguments[0].toString(), arguments[1].toString(), arguments[2].value<QDBusVariant>().variant());
    if (m_answered)
        m_changed();
}

QCoro::Task<> PortalMotion::follow(std::shared_ptr<SessionBus> bus)
{
    const QPointer<PortalMotion> self(this);
    if (!co_await bus->greet(answerLimit) || !self)
        co_return;
    m_bus = bus;
    // Subscribes before it asks, so that no change falls between the two.
    QDBusConnection connection = bus->connection();
    connection.connect(QString(), QLatin1String(portalPath), QLatin1String(settingsInterface),
                       QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    connection.asyncCall(addMatch());
    const QDBusPendingReply<Namespaces> reply =
        connection.asyncCall(readAll(), static_cast<int>(std::chrono::milliseconds(answerLimit).count()));
    co_await reply;
    if (!self || reply.isError())
        co_return;
    const Namespaces answer = reply.value();
    for (const Setting &setting : settings) {
        const QLatin1String key(setting.key);
        const QVariantMap values = answer.value(QLatin1String(setting.space));
        if (values.contains(key))
            take(QLatin1String(setting.space), key, values.value(key));
    }
    m_answered = true;
    m_changed();
}

void PortalMotion::take(const QString &space, const QString &key, const QVariant &value)
{
    for (const Setting &setting : settings) {
        if (space != QLatin1String(setting.space) || key != QLatin1String(setting.key))
            continue;
        if (setting.asksForRest(value))
            m_asking.insert(key);
        else
            m_asking.erase(key);
    }
}

} // namespace tolvenary
