#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>
#include <set>

class QDBusMessage;

namespace tolvenary
{

class SessionBus;

/// What the settings portal says about motion, from the first answer on and through every change. Thread: main, whose
/// event loop brings the answers; none comes once this object is gone.
class PortalMotion : public QObject
{
    Q_OBJECT
    Q_MOC_INCLUDE(<QDBusMessage>)

  public:
    /// Asks at once, on the bus of that address. `changed` is called when the answer is there and when it changes,
    /// never before the constructor has returned.
    PortalMotion(const QString &busAddress, std::function<void()> changed);
    ~PortalMotion() override;
    PortalMotion(const PortalMotion &) = delete;
    PortalMotion &operator=(const PortalMotion &) = delete;

    /// Whether as little as possible shall move; nothing while no portal has answered.
    std::optional<bool> isReduced() const;

  private:
    // A slot of the signal's own types would be found only once the library has met them elsewhere.
    Q_SLOT void settingChanged(const QDBusMessage &signal);
    QCoro::Task<> follow(std::shared_ptr<SessionBus> bus);
    void take(const QString &space, const QString &key, const QVariant &value);

    std::function<void()> m_changed;
    std::shared_ptr<SessionBus> m_bus; ///< held for the changes that it brings
    std::set<QString> m_asking;        ///< keys of the settings that ask for less motion
    bool m_answered = false;
};

} // namespace tolvenary
