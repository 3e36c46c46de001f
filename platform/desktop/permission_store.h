#pragma once

#include <QDBusConnection>
#include <QStringList>
#include <chrono>
#include <qcoro/qcorotask.h>

namespace tolvenary
{

/// Our own line in the desktop's list of who may use the microphone, which the user's privacy settings show and
/// change. Thread: main.
class PermissionStore
{
  public:
    explicit PermissionStore(QDBusConnection connection);

    /// Empty when the store says nothing of us, when there is no store, and when it does not answer within `limit`.
    QCoro::Task<QStringList> microphonePermission(std::chrono::milliseconds limit) const;

    /// Done once the store has answered, or has not within `limit`: an answer that could not be kept is asked again.
    QCoro::Task<> setMicrophonePermission(QString permission, std::chrono::milliseconds limit) const;

  private:
    QDBusConnection m_connection;
};

} // namespace tolvenary
