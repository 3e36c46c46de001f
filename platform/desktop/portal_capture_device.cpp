#include "platform/desktop/portal_capture_device.h"

#include "platform/desktop/access_dialog.h"
#include "platform/desktop/lockdown_portal.h"
#include "platform/desktop/microphone_settings.h"
#include "platform/desktop/permission_store.h"
#include "platform/desktop/portal_backends.h"
#include "platform/desktop/session_bus.h"

#include <QDBusConnection>
#include <QDeadlineTimer>

namespace tolvenary
{

namespace
{

using namespace std::chrono_literals;

/// How long the desktop's services may keep a user waiting who has pressed Start.
constexpr auto statusLimit = 1000ms;

/// Weak, because a question may stay open when the device that asked it is gone.
using BusAddress = std::weak_ptr<const QString>;

std::chrono::milliseconds left(const QDeadlineTimer &deadline)
{
    return std::chrono::milliseconds(deadline.remainingTime());
}

QString backendFor(const char *interface)
{
    return QString::fromStdString(portalBackendFor(interface, portalDirectories()).value_or(std::string()));
}

AVAuthorizationStatus statusOf(const QStringList &permission)
{
    if (permission == QStringList(QStringLiteral("no")))
        return AVAuthorizationStatus::denied;
    if (permission == QStringList(QStringLiteral("ask")))
        return AVAuthorizationStatus::notDetermined;
    return AVAuthorizationStatus::authorized;
}

QCoro::Task<AVAuthorizationStatus> currentStatus(QString busAddress)
{
    if (isMicrophoneDisabledInSettings())
        co_return AVAuthorizationStatus::restricted;
    const QDeadlineTimer deadline(statusLimit);
    SessionBus bus(busAddress);
    if (!co_await bus.greet(left(deadline)))
        co_return AVAuthorizationStatus::authorized;
    // Both are asked at once, so that one that hangs takes no time from the other.
    const PermissionStore store(bus.connection());
    auto permission = store.microphonePermission(left(deadline));
    const bool isLockedDown = co_await isMicrophoneLockedDown(
        bus.connection(), backendFor("org.freedesktop.impl.portal.Lockdown"), left(deadline));
    const auto status = statusOf(co_await permission);
    co_return isLockedDown ? AVAuthorizationStatus::restricted : status;
}

/// Asks the user and keeps the answer; true when access is granted.
QCoro::Task<bool> ask(QString busAddress)
{
    const auto backend = backendFor("org.freedesktop.impl.portal.Access");
    SessionBus bus(busAddress);
    if (backend.isEmpty() || !co_await bus.greet(statusLimit))
        co_return false;
    const auto answer = co_await askForMicrophone(bus, backend);
    if (answer == AccessAnswer::none)
        co_return false;
    const bool granted = answer == AccessAnswer::granted;
    const PermissionStore store(bus.connection());
    co_await store.setMicrophonePermission(granted ? QStringLiteral("yes") : QStringLiteral("no"), statusLimit);
    co_return granted;
}

QCoro::Task<> answerStatus(BusAddress address, std::function<void(AVAuthorizationStatus)> handler)
{
    const auto status = co_await currentStatus(*address.lock());
    if (!address.expired())
        handler(status);
}

QCoro::Task<> answerRequest(BusAddress address, std::function<void(bool)> handler)
{
    const auto status = co_await currentStatus(*address.lock());
    bool granted = status == AVAuthorizationStatus::authorized;
    if (!address.expired() && status == AVAuthorizationStatus::notDetermined)
        granted = co_await ask(*address.lock());
    if (!address.expired())
        handler(granted);
}

} // namespace

PortalCaptureDevice::PortalCaptureDevice() : m_busAddress(std::make_shared<const QString>(sessionBusAddress())) {}

void PortalCaptureDevice::authorizationStatusForMediaType(AVMediaType /*mediaType*/,
                                                          std::function<void(AVAuthorizationStatus)> completionHandler)
{
    answerStatus(m_busAddress, std::move(completionHandler));
}

void PortalCaptureDevice::requestAccessForMediaType(AVMediaType /*mediaType*/,
                                                    std::function<void(bool granted)> completionHandler)
{
    m_requests.push_back(std::move(completionHandler));
    if (m_requests.size() > 1)
        return;
    answerRequest(m_busAddress, [this](bool granted) {
        for (const auto &request : std::exchange(m_requests, {}))
            request(granted);
    });
}

} // namespace tolvenary
