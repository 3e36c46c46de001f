#pragma once

#include <memory>

struct pw_context;
struct pw_core;
struct pw_filter;
struct pw_proxy;
struct pw_stream;
struct pw_thread_loop;
struct spa_hook;

namespace tolvenary
{

/// Ends each kind of PipeWire handle in its own way. Thread: under the control lock, but for the loop itself.
struct PwRelease {
    void operator()(pw_context *context) const noexcept;
    void operator()(pw_core *core) const noexcept; ///< disconnects; whatever was made through it must be gone already
    void operator()(pw_filter *filter) const noexcept;
    void operator()(pw_proxy *proxy) const noexcept;
    void operator()(pw_stream *stream) const noexcept;
    void operator()(pw_thread_loop *loop) const noexcept; ///< stops it first
    void operator()(spa_hook *hook) const noexcept;       ///< takes it out of its list
};

template <typename T> using PwHandle = std::unique_ptr<T, PwRelease>;

/// A listener's registration; zeroed memory, to be passed to one add_listener call.
PwHandle<spa_hook> makeHook();

} // namespace tolvenary
