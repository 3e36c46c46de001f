#pragma once

#include "platform/audio_clients.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

class PipeWireAudioClients final : public AudioClients
{
  public:
    explicit PipeWireAudioClients(GraphSession &session) : m_session(session) {}

    Result<std::vector<AudioClient>> clientsWithStreams() override;

  private:
    GraphSession &m_session;
};

} // namespace tolvenary
