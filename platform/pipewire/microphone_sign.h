#pragma once

#include "platform/pipewire/default_doubt.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

/// Shows the desktop that the microphone is in use, for as long as it lives.
///
/// Mixers and privacy indicators list recording streams, with a format of their own. Our microphone node is none,
/// because only a filter can have its place in the cycle. So a stream beside it records, and throws away what it hears.
/// Nobody waits for it, and the session manager links it to the default source like any program's; so it also shows us
/// a change of the default that we were not told of. Not on the control thread.
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
