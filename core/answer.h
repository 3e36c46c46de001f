#pragma once

#include <QFuture>
#include <QPromise>
#include <qcoro/qcorofuture.h>

#include <memory>
#include <utility>

namespace tolvenary
{

/// What a platform operation answers through a handler, as something to co_await. The handler may be called at once or
/// later, on any thread; the coroutine goes on in its own thread, whose event loop must run.
///
///     const bool granted = co_await answer<bool>([&](auto handler) { device.requestAccess(audio, handler); });
template <typename T, typename Ask> QFuture<T> answer(Ask &&ask)
{
    auto promise = std::make_shared<QPromise<T>>(); // handlers are copied, promises cannot be
    promise->start();
    std::forward<Ask>(ask)([promise](T value) {
        promise->addResult(std::move(value));
        promise->finish();
    });
    return promise->future();
}

} // namespace tolvenary
