#pragma once

#include "platform/audio_server.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

class PipeWireAudioServer final : public AudioServer
{
  public:
    explicit PipeWireAudioServer(GraphSession &session) : m_session(session) {}

    void settle(std::function<void(bool answered)> done) override;
    AudioServerState state() override;

  private:
    GraphSession &m_session;
};

} // namespace tolvenary
