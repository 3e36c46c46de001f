#include "tests/session/tools/feeder.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <stdexcept>

namespace tolvenary::session
{

Feeder::Feeder(pw_loop *loop, const PlayerOptions &options) : m_options(options)
{
    static pw_filter_events events = {};
    events.version = PW_VERSION_FILTER_EVENTS;
    events.process = [](void *feeder, spa_io_position *position) {
        static_cast<Feeder *>(feeder)->process(static_cast<std::uint32_t>(position->clock.duration),
                                               position->clock.rate.denom);
    };
    m_filter = pw_filter_new_simple(
        loop, options.application.c_str(),
        pw_properties_new(PW_KEY_NODE_NAME, options.name.c_str(), PW_KEY_MEDIA_TYPE, "Audio", nullptr), &events, this);
    for (const std::string &channel : options.channels)
        m_ports.push_back(
            pw_filter_add_port(m_filter, PW_DIRECTION_OUTPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
                               pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                                 ("output_" + channel).c_str(), nullptr),
                               nullptr, 0));
    if (pw_filter_connect(m_filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error("the feeder cannot connect");
}

Feeder::~Feeder()
{
    pw_filter_destroy(m_filter);
}

void Feeder::process(std::uint32_t frames, double rate)
{
    for (std::size_t channel = 0; channel < m_ports.size(); ++channel) {
        auto *samples = static_cast<float *>(pw_filter_get_dsp_buffer(m_ports[channel], frames));
        if (samples == nullptr)
            continue;
        for (std::uint32_t i = 0; i < frames; ++i)
            samples[i] = m_options.sounds[channel]->at(m_frame + i, rate);
    }
    m_frame += frames;
}

} // namespace tolvenary::session
