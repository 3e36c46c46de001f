#include "tests/session/tools/stream_player.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <map>
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <stdexcept>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

std::uint32_t position(const std::string &channel)
{
    if (channel.starts_with("AUX"))
        return SPA_AUDIO_CHANNEL_AUX0 + static_cast<std::uint32_t>(std::stoul(channel.substr(3)));
    static const std::map<std::string, std::uint32_t> known = {
        {"MONO", SPA_AUDIO_CHANNEL_MONO}, {"FL", SPA_AUDIO_CHANNEL_FL},   {"FR", SPA_AUDIO_CHANNEL_FR},
        {"FC", SPA_AUDIO_CHANNEL_FC},     {"LFE", SPA_AUDIO_CHANNEL_LFE}, {"SL", SPA_AUDIO_CHANNEL_SL},
        {"SR", SPA_AUDIO_CHANNEL_SR},     {"RL", SPA_AUDIO_CHANNEL_RL},   {"RR", SPA_AUDIO_CHANNEL_RR},
    };
    return known.at(channel);
}

pw_properties *properties(const PlayerOptions &options)
{
    pw_properties *made = pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_NODE_NAME, options.name.c_str(),
                                            PW_KEY_APP_NAME, options.application.c_str(), nullptr);
    if (options.source) {
        pw_properties_set(made, PW_KEY_MEDIA_CLASS, "Audio/Source");
        pw_properties_set(made, PW_KEY_PRIORITY_SESSION, "3000");
    } else {
        pw_properties_set(made, PW_KEY_MEDIA_CATEGORY, "Playback");
        pw_properties_set(made, PW_KEY_MEDIA_ROLE, "Music");
        pw_properties_set(made, PW_KEY_STREAM_DONT_REMIX, options.keepChannels ? "true" : nullptr);
    }
    return made;
}

} // namespace

StreamPlayer::StreamPlayer(pw_loop *loop, const PlayerOptions &options) : m_loop(loop), m_options(options)
{
    connect(options.channels, options.rate);
}

void StreamPlayer::connect(const std::vector<std::string> &channels, int rate)
{
    static pw_stream_events events = {};
    events.version = PW_VERSION_STREAM_EVENTS;
    events.process = [](void *player) { static_cast<StreamPlayer *>(player)->process(); };
    m_stream = pw_stream_new_simple(m_loop, m_options.application.c_str(), properties(m_options), &events, this);
    m_channels = channels.size();
    m_rate = rate;

    spa_audio_info_raw format = {};
    format.format = SPA_AUDIO_FORMAT_F32;
    format.rate = static_cast<std::uint32_t>(rate);
    format.channels = static_cast<std::uint32_t>(channels.size());
    std::transform(channels.begin(), channels.end(), format.position, position);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = {};
    builder.data = memory.data();
    builder.size = memory.size();
    const spa_pod *params = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
    const auto flags = static_cast<pw_stream_flags>((m_options.source ? 0 : PW_STREAM_FLAG_AUTOCONNECT) |
                                                    PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
    if (pw_stream_connect(m_stream, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &params, 1) < 0)
        throw std::runtime_error("the player cannot connect");
}

StreamPlayer::~StreamPlayer()
{
    pw_stream_destroy(m_stream);
}

void StreamPlayer::changeFormat()
{
    struct Format {
        int rate;
        std::vector<std::string> channels;
    };
    static const std::vector<Format> formats = {
        {8000, {"MONO"}}, {96000, {"FL", "FR", "FC", "LFE", "RL", "RR"}}, {44100, {"FL", "FR"}}};
    const Format &next = formats[m_changes++ % formats.size()];
    pw_stream_destroy(m_stream);
    connect(next.channels, next.rate);
}

void StreamPlayer::process()
{
    if (m_options.withhold)
        return;
    pw_buffer *buffer = pw_stream_dequeue_buffer(m_stream);
    if (buffer == nullptr)
        return;
    spa_data &data = buffer->buffer->datas[0];
    const auto stride = static_cast<std::uint32_t>(m_channels * sizeof(float));
    std::uint64_t frames = data.maxsize / stride;
    if (buffer->requested > 0)
        frames = std::min(frames, buffer->requested);
    auto *sample = static_cast<float *>(data.data);
    for (std::uint64_t i = 0; i < frames; ++i, ++m_frame)
        for (std::size_t channel = 0; channel < m_channels; ++channel)
            *sample++ = m_options.sounds[channel % m_options.sounds.size()]->at(m_frame, m_rate);
    data.chunk->offset = 0;
    data.chunk->stride = static_cast<std::int32_t>(stride);
    data.chunk->size = static_cast<std::uint32_t>(frames) * stride;
    if (m_options.die && 4 * m_frame > static_cast<std::uint64_t>(m_options.rate))
        kill(getpid(), SIGKILL);
    pw_stream_queue_buffer(m_stream, buffer);
    m_blocks.fetch_add(1, std::memory_order_relaxed);
}

} // namespace tolvenary::session
