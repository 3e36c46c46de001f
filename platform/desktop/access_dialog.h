#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

namespace tolvenary
{

class SessionBus;

enum class AccessAnswer { granted, refused, none };

/// Puts the desktop's own question whether we may use the microphone, through the portal backend of that bus name, and
/// waits for the user as long as it takes. `none` when the question could not be put, or ended without the user's
/// answer: the backend went away, the dialog was closed. The bus, which has greeted us, outlives it. Thread: main.
QCoro::Task<AccessAnswer> askForMicrophone(const SessionBus &bus, QString backend);

} // namespace tolvenary
