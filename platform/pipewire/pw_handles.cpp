#include "platform/pipewire/pw_handles.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <pipewire/stream.h>

namespace tolvenary
{

void PwRelease::operator()(pw_context *context) const noexcept
{
    pw_context_destroy(context);
}
void PwRelease::operator()(pw_core *core) const noexcept
{
    pw_core_disconnect(core);
}
void PwRelease::operator()(pw_filter *filter) const noexcept
{
    pw_filter_destroy(filter);
}
void PwRelease::operator()(pw_proxy *proxy) const noexcept
{
    pw_proxy_destroy(proxy);
}
void PwRelease::operator()(pw_stream *stream) const noexcept
{
    pw_stream_destroy(stream);
}

void PwRelease::operator()(pw_thread_loop *loop) const noexcept
{
    pw_thread_loop_stop(loop);
    pw_thread_loop_destroy(loop);
}

void PwRelease::operator()(spa_hook *hook) const noexcept
{
    // A hook that was never added, or that its emitter has already dropped, is in no list.
    if (hook->link.next != nullptr)
        spa_hook_remove(hook);
    delete hook; // NOLINT(cppcoreguidelines-owning-memory): this is the owner's deleter
}

PwHandle<spa_hook> makeHook()
{
    return PwHandle<spa_hook>(new spa_hook{});
}

} // namespace tolvenary
