#include "tests/session/tools/unfit_sink.h"

#include <array>
#include <iostream>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <spa/param/format.h>
#include <spa/pod/builder.h>
#include <stdexcept>

namespace tolvenary::session
{

UnfitSink::UnfitSink(pw_loop *loop, const PlayerOptions &options)
{
    static pw_filter_events events = {};
    events.version = PW_VERSION_FILTER_EVENTS;
    m_filter = pw_filter_new_simple(loop, options.application.c_str(),
                                    pw_properties_new(PW_KEY_NODE_NAME, options.name.c_str(), PW_KEY_NODE_DESCRIPTION,
                                                      options.application.c_str(), PW_KEY_MEDIA_TYPE, "Audio",
                                                      PW_KEY_MEDIA_CLASS, "Audio/Sink", nullptr),
                                    &events, nullptr);
    for (const std::string &channel : options.channels)
        m_ports.push_back(pw_filter_add_port(m_filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                                             sizeof(void *),
                                             pw_properties_new(PW_KEY_PORT_NAME, ("playback_" + channel).c_str(),
                                                               PW_KEY_AUDIO_CHANNEL, channel.c_str(), nullptr),
                                             nullptr, 0));
    if (pw_filter_connect(m_filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error("the sink cannot connect");
}

UnfitSink::~UnfitSink()
{
    pw_filter_destroy(m_filter);
}

void UnfitSink::decline()
{
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = {};
    builder.data = memory.data();
    builder.size = memory.size();
    auto *notes = static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_application), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_control)));
    for (void *port : m_ports)
        pw_filter_update_params(m_filter, port, &notes, 1);
    std::cout << "declined" << std::endl;
}

} // namespace tolvenary::session
