#include "tests/session/tools/liar.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <pipewire/filter.h>
#include <pipewire/keys.h>

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

Liar::Liar(pw_loop *loop, const PlayerOptions &options)
    : m_options(options),
      m_filter(loop, options,
               {{PW_KEY_MEDIA_CATEGORY, "Playback"},
                {PW_KEY_MEDIA_CLASS, "Stream/Output/Audio"},
                {PW_KEY_NODE_ALWAYS_PROCESS, "true"}},
               [this](std::uint32_t frames, double rate) { process(frames, rate); })
{
    m_filter.addOutputs();
    m_filter.connect();
}

void Liar::signalled()
{
    const std::size_t next = (m_story.load() + 1) % stories.size();
    m_story.store(next);
    std::cout << stories[next].name << std::endl;
}

void Liar::process(std::uint32_t frames, double rate)
{
    const Story &story = stories[m_story.load(std::memory_order_relaxed)];
    for (std::size_t channel = 0; channel < m_filter.ports().size(); ++channel) {
        pw_buffer *buffer = pw_filter_dequeue_buffer(m_filter.ports()[channel]);
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
        pw_filter_queue_buffer(m_filter.ports()[channel], buffer);
    }
    m_frame += frames;
}

} // namespace tolvenary::session
