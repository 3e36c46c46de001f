#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace tolvenary::test
{

/// Runs what is queued on the main thread.
inline void processEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// Runs the event loop until the condition holds; false when that takes unreasonably long.
template <typename Condition> bool waitUntil(Condition condition)
{
    const QDeadlineTimer deadline(10'000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

} // namespace tolvenary::test
