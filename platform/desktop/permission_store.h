#pragma once

#include <QStringList>
#include <chrono>
#include <memory>
#include <qcoro/qcorotask.h>

class QDBusConnection;

namespace tolvenary
{

/// Our own line in the desktop's list of who may use the microphone, which the user's privacy settings show and
/// change. Thread: main.
class PermissionStore
{
  public:
    explicit PermissionStore(const QDBusConnection &connection);
    ~PermissionStore();
    PermissionStore(const PermissionStore &) = delete;
    PermissionStore &operator=(const PermissionStore &) = delete;

    /// Empty when the store says nothing of us, when there is no store, and when it does not answer within `limit`.
    QCoro::Task<QStringList> microphonePermission(std::chrono::milliseconds limit) const;

    /// Done once the store has answered, or has not within `limit`: an answer that could not be kept is asked again.
    QCoro::Task<> setMicrophonePermission(QString permission, std::chrono::milliseconds limit) const;

  private:
    std::unique_ptr<QDBusConnection> m_connection;
};

} // namespace tolvenary
