#include "platform/pipewire/pipewire_audio_units.h"

#include "platform/pipewire/pipewire_input_unit.h"
#include "platform/pipewire/pipewire_output_unit.h"

namespace tolvenary
{

std::unique_ptr<AudioOutputUnit> PipeWireAudioUnits::makeOutputUnit()
{
    return std::make_unique<PipeWireOutputUnit>(m_session);
}

std::unique_ptr<AudioInputUnit> PipeWireAudioUnits::makeInputUnit()
{
    return std::make_unique<PipeWireInputUnit>(m_session);
}

} // namespace tolvenary
