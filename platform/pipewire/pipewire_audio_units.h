#pragma once

#include "platform/audio_units.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

class PipeWireAudioUnits final : public AudioUnits
{
  public:
    explicit PipeWireAudioUnits(GraphSession &session) : m_session(session) {}

    std::unique_ptr<AudioOutputUnit> makeOutputUnit() override;
    std::unique_ptr<AudioInputUnit> makeInputUnit() override;

  private:
    GraphSession &m_session;
};

} // namespace tolvenary
