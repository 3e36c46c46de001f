#include "tests/session/support/accessible_window.h"

#include "tests/session/support/wait_until.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <algorithm>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString valueInterface = QStringLiteral("org.a11y.atspi.Value");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr int patience = 3000;

struct Reference {
    QString service;
    QString path;
};

std::vector<Reference> references(const QVariant &value)
{
    std::vector<Reference> found;
    const auto list = value.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Reference reference;
        QDBusObjectPath path;
        list.beginStructure();
        list >> reference.service >> path;
        list.endStructure();
        reference.path = path.path();
        found.push_back(reference);
    }
    list.endArray();
    return found;
}

std::vector<QString> actionNames(const QVariant &value)
{
    std::vector<QString> names;
    const auto list = value.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QString description;
        QString keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names.push_back(name);
    }
    list.endArray();
    return names;
}

QString accessibilityBusAddress()
{
    const QDBusMessage ask =
        QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const QDBusReply<QString> address = QDBusConnection::sessionBus().call(ask);
    if (!address.isValid())
        throw std::runtime_error("no accessibility bus: " + address.error().message().toStdString());
    return address.value();
}

} // namespace

struct AccessibleWindow::Bus {
    Bus() : connection(QDBusConnection::connectToBus(accessibilityBusAddress(), "accessibility")) {}
    ~Bus() { QDBusConnection::disconnectFromBus("accessibility"); }
    Bus(const Bus &) = delete;
    Bus &operator=(const Bus &) = delete;

    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return connection.call(message, QDBus::Block, patience);
    }
    QVariant first(const QDBusMessage &reply) const
    {
        return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
    }
    std::vector<Reference> children(const QString &service, const QString &path) const
    {
        const QVariant list = first(call(service, path, accessible, "GetChildren"));
        return list.isValid() ? references(list) : std::vector<Reference>();
    }

    bool findApplication(pid_t process);
    void collect(const QString &path, std::vector<AccessibleElement> &elements) const;

    QDBusConnection connection;
    QString application;
};

bool AccessibleWindow::Bus::findApplication(pid_t process)
{
    for (const Reference &one : children("org.a11y.atspi.Registry", rootPath)) {
        const QDBusReply<uint> owner = connection.interface()->servicePid(one.service);
        if (owner.isValid() && static_cast<pid_t>(owner.value()) == process)
            application = one.service;
    }
    return !application.isEmpty();
}

void AccessibleWindow::Bus::collect(const QString &path, std::vector<AccessibleElement> &elements) const
{
    const QVariant name = first(call(application, path, properties, "Get", {accessible, "Name"}));
    const QVariant role = first(call(application, path, accessible, "GetRoleName"));
    if (!name.isValid() || !role.isValid())
        return;
    elements.push_back({path.toStdString(), name.value<QDBusVariant>().variant().toString().toStdString(),
                        role.toString().toStdString()});
    for (const Reference &child : children(application, path))
        collect(child.path, elements);
}

AccessibleWindow::AccessibleWindow(pid_t process) : m_bus(std::make_unique<Bus>())
{
    if (!waitUntil([&] { return m_bus->findApplication(process); }, std::chrono::seconds(15)))
        throw std::runtime_error("the program does not show up on the accessibility bus");
}

AccessibleWindow::~AccessibleWindow() = default;

std::vector<AccessibleElement> AccessibleWindow::elements() const
{
    std::vector<AccessibleElement> found;
    m_bus->collect(rootPath, found);
    return found;
}

std::optional<AccessibleElement> AccessibleWindow::find(const std::string &name, const std::string &role) const
{
    for (const AccessibleElement &element : elements())
        if (element.name == name && (role.empty() || element.role == role))
            return element;
    return std::nullopt;
}

std::string AccessibleWindow::textWith(const std::string &part) const
{
    for (const AccessibleElement &element : elements())
        if (element.name.find(part) != std::string::npos)
            return element.name;
    return {};
}

AccessibleElement AccessibleWindow::await(const std::string &name, const std::string &role) const
{
    std::optional<AccessibleElement> found;
    const auto look = [&] {
        found = find(name, role);
        return found.has_value();
    };
    if (!waitUntil(look, std::chrono::seconds(10)))
        throw std::runtime_error("nothing in the window is called \"" + name + "\"");
    return *found;
}

std::string AccessibleWindow::focus() const
{
    std::string name;
    for (const AccessibleElement &element : elements())
        if (isFocused(element))
            name = element.name;
    return name;
}

void AccessibleWindow::act(const AccessibleElement &element) const
{
    const QString interface = QStringLiteral("org.a11y.atspi.Action");
    const QString path = QString::fromStdString(element.path);
    const QVariant list = m_bus->first(m_bus->call(m_bus->application, path, interface, "GetActions"));
    const std::vector<QString> actions = list.isValid() ? actionNames(list) : std::vector<QString>();
    const auto press = std::find(actions.begin(), actions.end(), QStringLiteral("Press"));
    const int index = press != actions.end() ? static_cast<int>(press - actions.begin()) : 0;
    m_bus->call(m_bus->application, path, interface, "DoAction", {index});
}

void AccessibleWindow::setValue(const AccessibleElement &element, double value) const
{
    m_bus->call(m_bus->application, QString::fromStdString(element.path), properties, "Set",
                {valueInterface, "CurrentValue", QVariant::fromValue(QDBusVariant(value))});
}

std::string AccessibleWindow::description(const AccessibleElement &element) const
{
    const QVariant answer = m_bus->first(m_bus->call(m_bus->application, QString::fromStdString(element.path),
                                                     properties, "Get", {accessible, "Description"}));
    return answer.value<QDBusVariant>().variant().toString().toStdString();
}

double AccessibleWindow::value(const AccessibleElement &element) const
{
    const QVariant answer = m_bus->first(m_bus->call(m_bus->application, QString::fromStdString(element.path),
                                                     properties, "Get", {valueInterface, "CurrentValue"}));
    return answer.value<QDBusVariant>().variant().toDouble();
}

ScreenBox AccessibleWindow::box(const AccessibleElement &element) const
{
    const QVariant answer =
        m_bus->first(m_bus->call(m_bus->application, QString::fromStdString(element.path), "org.a11y.atspi.Component",
                                 "GetExtents", {QVariant::fromValue(uint{0})}));
    ScreenBox box;
    const auto extents = answer.value<QDBusArgument>();
    extents.beginStructure();
    extents >> box.x >> box.y >> box.width >> box.height;
    extents.endStructure();
    return box;
}

bool AccessibleWindow::isFocused(const AccessibleElement &element) const
{
    const QVariant answer =
        m_bus->first(m_bus->call(m_bus->application, QString::fromStdString(element.path), accessible, "GetState"));
    if (!answer.isValid())
        return false;
    QList<uint> words;
    answer.value<QDBusArgument>() >> words;
    constexpr uint focused = 1U << 12U; // as AT-SPI numbers the states
    return (words.value(0) & focused) != 0;
}

} // namespace tolvenary::session
