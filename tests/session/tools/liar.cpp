#include "tests/session/tools/liar.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

struct Story {
    const char *name;
    /// What is said of a cycle of so many bytes in a buffer of so many.
    void (*tell)(spa_chunk &chunk, std::uint32_t cycle, std::uint32_t capacity);
};

constexpr std::array stories{
    Story{"the truth",
          [](spa_chunk &chunk, std::uint32_t cycle, std::uint32_t) {
              chunk.offset = 0;
              chunk.size = cycle;
          }},
    Story{"far away",
          [](spa_chunk &chunk, std::uint32_t cycle, std::uint32_t) {
              chunk.offset = 0x7FF00000;
              chunk.size = cycle;
          }},
    Story{"just behind the end",
          [](spa_chunk &chunk, std::uint32_t, std::uint32_t capacity) {
              chunk.offset = capacity;
              chunk.size = 0xFFFFFFFF;
          }},
    Story{"before the beginning",
          [](spa_chunk &chunk, std::uint32_t cycle, std::uint32_t) {
              chunk.offset = 0U - cycle;
              chunk.size = 2 * cycle;
          }},
    Story{"a single sample",
          [](spa_chunk &chunk, std::uint32_t, std::uint32_t) {
              chunk.offset = 0;
              chunk.size = sizeof(float);
          }},
};

} // namespace

Liar::Liar(pw_loop *loop, const PlayerOptions &options) : m_options(options)
{
    static pw_filter_events events = {};
    events.version = PW_VERSION_FILTER_EVENTS;
    events.process = [](void *liar, spa_io_position *position) {
        static_cast<Liar *>(liar)->process(static_cast<std::uint32_t>(position->clock.duration),
                                           position->clock.rate.denom);
    };
    m_filter =
        pw_filter_new_simple(loop, options.application.c_str(),
                             pw_properties_new(PW_KEY_NODE_NAME, options.name.c_str(), PW_KEY_MEDIA_TYPE, "Audio",
                                               PW_KEY_MEDIA_CATEGORY, "Playback", PW_KEY_MEDIA_CLASS,
                                               "Stream/Output/Audio", PW_KEY_NODE_ALWAYS_PROCESS, "true", nullptr),
                             &events, this);
    for (const std::string &channel : options.channels)
        m_ports.push_back(pw_filter_add_port(
            m_filter, PW_DIRECTION_OUTPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void *),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                              ("output_" + channel).c_str(), PW_KEY_AUDIO_CHANNEL, channel.c_str(), nullptr),
            nullptr, 0));
    if (pw_filter_connect(m_filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) < 0)
        throw std::runtime_error("the liar cannot connect");
}

Liar::~Liar()
{
    pw_filter_destroy(m_filter);
}

void Liar::changeStory()
{
    const std::size_t next = (m_story.load() + 1) % stories.size();
    m_story.store(next);
    std::cout << stories[next].name << std::endl;
}

void Liar::process(std::uint32_t frames, double rate)
{
    const Story &story = stories[m_story.load(std::memory_order_relaxed)];
    for (std::size_t channel = 0; channel < m_ports.size(); ++channel) {
        pw_buffer *buffer = pw_filter_dequeue_buffer(m_ports[channel]);
        if (buffer == nullptr)
            continue;
        spa_data &data = buffer->buffer->datas[0];
        auto *samples = static_cast<float *>(data.data);
        const auto bytes = std::min<std::uint32_t>(frames * sizeof(float), data.maxsize);
        for (std::uint32_t i = 0; i < bytes / sizeof(float); ++i)
            samples[i] = m_options.sounds[channel]->at(m_frame + i, rate);
        data.chunk->stride = sizeof(float);
        data.chunk->flags = 0;
        story.tell(*data.chunk, bytes, data.maxsize);
        pw_filter_queue_buffer(m_ports[channel], buffer);
    }
    m_frame += frames;
}

} // namespace tolvenary::session
