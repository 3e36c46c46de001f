#include "tests/session/tools/tool_filter.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <stdexcept>

namespace tolvenary::session
{

ToolFilter::ToolFilter(pw_loop *loop, const PlayerOptions &options,
                       const std::vector<std::pair<const char *, std::string>> &properties, Process process)
    : m_options(options), m_process(std::move(process))
{
    static pw_filter_events events = {};
    events.version = PW_VERSION_FILTER_EVENTS;
    events.process = [](void *filter, spa_io_position *position) {
        static_cast<const ToolFilter *>(filter)->m_process(static_cast<std::uint32_t>(position->clock.duration),
                                                           position->clock.rate.denom);
    };
    pw_properties *all = pw_properties_new(PW_KEY_NODE_NAME, options.name.c_str(), PW_KEY_MEDIA_TYPE, "Audio", nullptr);
    for (const auto &[key, value] : properties)
        pw_properties_set(all, key, value.c_str());
    m_filter = pw_filter_new_simple(loop, options.application.c_str(), all, &events, this);
}

ToolFilter::~ToolFilter()
{
    pw_filter_destroy(m_filter);
}

void ToolFilter::addOutputs()
{
    for (const std::string &channel : m_options.channels)
        m_ports.push_back(pw_filter_add_port(
            m_filter, PW_DIRECTION_OUTPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                              ("output_" + channel).c_str(), PW_KEY_AUDIO_CHANNEL, channel.c_str(), nullptr),
            nullptr, 0));
}

void ToolFilter::addInputs(std::span<const spa_pod *> params)
{
    for (const std::string &channel : m_options.channels)
        m_ports.push_back(pw_filter_add_port(m_filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                                             sizeof(void *),
                                             pw_properties_new(PW_KEY_PORT_NAME, ("playback_" + channel).c_str(),
                                                               PW_KEY_AUDIO_CHANNEL, channel.c_str(), nullptr),
                                             params.data(), static_cast<std::uint32_t>(params.size())));
}

void ToolFilter::connect()
{
    if (pw_filter_connect(m_filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error(m_options.name + " cannot connect");
}

} // namespace tolvenary::session
