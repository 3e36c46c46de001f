#include "tests/session/tools/unfit_sink.h"

#include <array>
#include <iostream>
#include <pipewire/filter.h>
#include <pipewire/keys.h>
#include <spa/param/format.h>
#include <spa/pod/builder.h>

namespace tolvenary::session
{

UnfitSink::UnfitSink(pw_loop *loop, const PlayerOptions &options)
    : m_filter(loop, options, {{PW_KEY_NODE_DESCRIPTION, options.application}, {PW_KEY_MEDIA_CLASS, "Audio/Sink"}},
               [](std::uint32_t, double) {})
{
    m_filter.addInputs({});
    m_filter.connect();
}

void UnfitSink::signalled()
{
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = {};
    builder.data = memory.data();
    builder.size = memory.size();
    auto *notes = static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_application), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_control)));
    for (void *port : m_filter.ports())
        pw_filter_update_params(m_filter.get(), port, &notes, 1);
    std::cout << "declined" << std::endl;
}

} // namespace tolvenary::session
