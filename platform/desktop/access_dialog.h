#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

namespace tolvenary
{

class SessionBus;

enum class AccessAnswer { granted, refused, none };

/// Asks the user, in the desktop's own dialog, whether we may use the microphone, through the portal backend of that
/// bus name, and waits as long as it takes. `none` when the question could not be asked, or ended without an answer:
/// the backend went away, the dialog was closed. The bus, which has greeted us, outlives it. Thread: main.
QCoro::Task<AccessAnswer> askForMicrophone(const SessionBus &bus, QString backend);

} // namespace tolvenary
