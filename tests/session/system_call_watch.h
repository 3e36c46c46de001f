#pragma once

namespace tolvenary::session
{

enum class SystemCall {
    contendedLock, ///< of a mutex that inherits priorities, or its handing over
    wait,
    other,
};

/// Sees every system call of a thread, also those that the C library makes by itself: the kernel hands it to the
/// program first. One a stretch: what follows the first is let through unseen.
namespace system_call_watch
{

/// Called in the middle of the call: may do nothing that is not safe in a signal handler.
using Seen = void (*)(SystemCall);

/// Begins a stretch on this thread; false where the kernel or the processor does not offer it.
bool begin(Seen seen);
void end();

} // namespace system_call_watch

} // namespace tolvenary::session
