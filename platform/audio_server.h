#pragma once

#include <functional>

namespace tolvenary
{

/// The state of the sound server, as far as it is known.
enum class AudioServerState {
    answers,
    hangs, ///< it is there and does not answer; it may go on as if nothing had happened
    gone,  ///< and with it all that was made in it
};

/// The sound server behind the other operations: somebody else's process, which may be slow, absent or hung.
class AudioServer
{
  public:
    virtual ~AudioServer() = default;

    /// Asks the server for one round trip without blocking, and calls `done` on any thread as soon as everything that
    /// it had to tell is known, or once it is clear that it will not answer (after a second at most). After a false,
    /// the operations of the other interfaces fail at once instead of waiting, until it answers again. Thread: main.
    virtual void settle(std::function<void(bool answered)> done) = 0;

    /// Never waits. Also asks the server once more, so that whoever calls this regularly learns of a hang within a
    /// second. Thread: main.
    virtual AudioServerState state() = 0;
};

} // namespace tolvenary
