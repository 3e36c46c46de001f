#pragma once

#include "platform/pipewire/default_doubt.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

/// Shows the desktop that the microphone is in use, for as long as it lives.
///
/// What mixers and privacy indicators list are recording streams, with a format of their own; our microphone node,
/// which has to be a filter for its place in the cycle, is none. So a stream is recorded beside it and thrown away:
/// nobody waits for it, and the session manager links it to the default source as any program's. By that it also shows
/// us a change of the default that we were not told of. Not the control thread.
class MicrophoneSign final : private GraphWatcher
{
  public:
    explicit MicrophoneSign(GraphSession &session);
    ~MicrophoneSign() override;
    MicrophoneSign(const MicrophoneSign &) = delete;
    MicrophoneSign &operator=(const MicrophoneSign &) = delete;

  private:
    struct Recording;

    void graphChanged() override;
    void serverLost() override;
    void show();
    void showAgain();
    void hide();

    GraphSession &m_session;
    DefaultDoubt m_doubt;
    std::shared_ptr<Recording> m_recording;
};

} // namespace tolvenary
