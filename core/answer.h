#pragma once

#include <QCoroFuture>
#include <QFuture>
#include <QPromise>
#include <functional>
#include <memory>
#include <optional>

namespace tolvenary
{

/// Lets a coroutine wait for an operation that answers through a handler, on whatever thread: the coroutine goes on on
/// its own thread, from its event loop. `ask` is called with the handler. Empty when the handler was dropped uncalled.
template <typename T, typename Ask> QCoro::Task<std::optional<T>> answerTo(Ask ask)
{
    auto promise = std::make_shared<QPromise<T>>();
    promise->start();
    const QFuture<T> future = promise->future();
    ask(std::function<void(T)>([promise = std::move(promise)](T value) {
        promise->addResult(std::move(value));
        promise->finish();
    }));
    co_await qCoro(future).waitForFinished();
    if (future.resultCount() == 0)
        co_return std::nullopt;
    co_return future.result();
}

} // namespace tolvenary
