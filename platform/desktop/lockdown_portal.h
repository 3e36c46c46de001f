#pragma once

#include <QString>
#include <chrono>
#include <qcoro/qcorotask.h>

class QDBusConnection;

namespace tolvenary
{

/// Whether the desktop's portal backend of that bus name says that its administrator has disabled the microphone.
/// False when the desktop has no such backend (an empty name), and when it does not answer within `limit`. Thread:
/// main.
QCoro::Task<bool> isMicrophoneLockedDown(QDBusConnection connection, QString backend, std::chrono::milliseconds limit);

} // namespace tolvenary
