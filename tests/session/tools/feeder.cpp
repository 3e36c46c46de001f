#include "tests/session/tools/feeder.h"

#include <pipewire/filter.h>

namespace tolvenary::session
{

Feeder::Feeder(pw_loop *loop, const PlayerOptions &options)
    : m_options(options),
      m_filter(loop, options, {}, [this](std::uint32_t frames, double rate) { process(frames, rate); })
{
    m_filter.addOutputs();
    m_filter.connect();
}

void Feeder::process(std::uint32_t frames, double rate)
{
    for (std::size_t channel = 0; channel < m_filter.ports().size(); ++channel) {
        auto *samples = static_cast<float *>(pw_filter_get_dsp_buffer(m_filter.ports()[channel], frames));
        if (samples == nullptr)
            continue;
        for (std::uint32_t i = 0; i < frames; ++i)
            samples[i] = m_options.sounds[channel]->at(m_frame + i, rate);
    }
    m_frame += frames;
}

} // namespace tolvenary::session
