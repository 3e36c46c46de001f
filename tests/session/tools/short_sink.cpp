#include "tests/session/tools/short_sink.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <pipewire/filter.h>
#include <pipewire/keys.h>
#include <spa/param/audio/raw.h>
#include <spa/param/buffers.h>
#include <spa/param/format.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>
#include <span>

namespace tolvenary::session
{

namespace
{

constexpr std::uint32_t capacity = ShortSink::longestCycle * sizeof(float);

const spa_pod *shortBuffers(spa_pod_builder &builder)
{
    return static_cast<const spa_pod *>(
        spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
                                   SPA_POD_Int(1), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
                                   SPA_POD_Int(capacity), SPA_PARAM_BUFFERS_stride, SPA_POD_Int(sizeof(float))));
}

const spa_pod *samples(spa_pod_builder &builder)
{
    return static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_audio),
        SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_dsp), SPA_FORMAT_AUDIO_format,
        SPA_POD_Id(SPA_AUDIO_FORMAT_DSP_F32)));
}

bool hasSound(const spa_data &data)
{
    const std::uint32_t bytes = std::min(data.chunk->size, std::min(data.maxsize, capacity));
    const std::span samples(static_cast<const float *>(data.data), data.data != nullptr ? bytes / sizeof(float) : 0);
    return std::ranges::any_of(samples, [](float sample) { return sample != 0; });
}

} // namespace

ShortSink::ShortSink(pw_loop *loop, const PlayerOptions &options)
    : m_filter(loop, options, {{PW_KEY_NODE_DESCRIPTION, options.application}, {PW_KEY_MEDIA_CLASS, "Audio/Sink"}},
               [this](std::uint32_t, double) { process(); })
{
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = {};
    builder.data = memory.data();
    builder.size = memory.size();
    // All that it takes is said here: what the library would say in its place has room for the longest cycle.
    std::array params{samples(builder), shortBuffers(builder)};
    m_filter.addInputs(params);
    m_filter.connect();
}

void ShortSink::signalled()
{
    std::cout << (m_hasHeard.exchange(false) ? "heard" : "nothing") << std::endl;
}

void ShortSink::process()
{
    for (void *port : m_filter.ports()) {
        pw_buffer *buffer = pw_filter_dequeue_buffer(port);
        if (buffer == nullptr)
            continue;
        if (hasSound(buffer->buffer->datas[0]))
            m_hasHeard.store(true, std::memory_order_relaxed);
        pw_filter_queue_buffer(port, buffer);
    }
}

} // namespace tolvenary::session
