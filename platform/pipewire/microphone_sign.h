#pragma once

#include "platform/pipewire/graph_session.h"

struct pw_stream;

namespace tolvenary
{

/// Shows the desktop that the microphone is in use, for as long as it lives.
///
/// What mixers and privacy indicators list are recording streams, with a format of their own; our microphone node,
/// which has to be a filter for its place in the cycle, is none. So a stream is recorded beside it and thrown away:
/// nobody waits for it, and the session manager links it to the default source as any program's. Not the control
/// thread.
class MicrophoneSign final : private GraphWatcher
{
  public:
    explicit MicrophoneSign(GraphSession &session);
    ~MicrophoneSign() override;
    MicrophoneSign(const MicrophoneSign &) = delete;
    MicrophoneSign &operator=(const MicrophoneSign &) = delete;

  private:
    struct Events;

    void graphChanged() override;
    void serverLost() override;
    void show();
    void throwAway(); // real-time

    GraphSession &m_session;
    PwHandle<pw_stream> m_stream;
    PwHandle<spa_hook> m_hook; // declared last: taken out before the stream goes
};

} // namespace tolvenary
