#include "platform/pipewire/microphone_sign.h"

#include <array>
#include <pipewire/pipewire.h>
#include <pipewire/stream.h>
#include <spa/param/audio/format-utils.h>

namespace tolvenary
{

namespace
{

pw_properties *properties(const GraphSession &session)
{
    // Without a role: one for calls would make some session managers turn the music down.
    return pw_properties_new(PW_KEY_APP_NAME, "Tolvenary", PW_KEY_APP_ID, "com.tolvenary.app", PW_KEY_MEDIA_NAME,
                             "Microphone", PW_KEY_NODE_NAME, "com.tolvenary.microphone.sign", PW_KEY_NODE_DESCRIPTION,
                             "Tolvenary records", PW_KEY_NODE_GROUP, session.group().c_str(), PW_KEY_MEDIA_TYPE,
                             "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_NODE_PASSIVE, "true", nullptr);
}

} // namespace

struct MicrophoneSign::Events {
    static const pw_stream_events *table()
    {
        static const pw_stream_events events = [] {
            pw_stream_events made{};
            made.version = PW_VERSION_STREAM_EVENTS;
            made.process = [](void *data) { static_cast<MicrophoneSign *>(data)->throwAway(); };
            return made;
        }();
        return &events;
    }
};

MicrophoneSign::MicrophoneSign(GraphSession &session) : m_session(session)
{
    const Connection::Lock lock(m_session.connection());
    m_session.addWatcher(*this);
    show();
}

MicrophoneSign::~MicrophoneSign()
{
    const Connection::Lock lock(m_session.connection());
    m_session.removeWatcher(*this);
    serverLost();
}

void MicrophoneSign::graphChanged()
{
    show();
}

void MicrophoneSign::serverLost()
{
    m_hook.reset();
    m_stream.reset();
}

/// On each connection anew, as all our nodes. One that fails is not tried again: the mix does without.
void MicrophoneSign::show()
{
    pw_core *core = m_session.connection().core();
    if (m_stream || core == nullptr)
        return;
    m_stream.reset(pw_stream_new(core, "Microphone", properties(m_session)));
    if (!m_stream)
        return;
    m_hook = makeHook();
    pw_stream_add_listener(m_stream.get(), m_hook.get(), Events::table(), this);
    spa_audio_info_raw format{};
    format.format = SPA_AUDIO_FORMAT_F32P;
    format.rate = m_session.rate();
    format.channels = 1;
    format.position[0] = SPA_AUDIO_CHANNEL_MONO;
    std::array<std::uint8_t, 256> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const spa_pod *param = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
    constexpr int flags = PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS;
    pw_stream_connect(m_stream.get(), PW_DIRECTION_INPUT, PW_ID_ANY, static_cast<pw_stream_flags>(flags), &param, 1);
}

void MicrophoneSign::throwAway()
{
    if (pw_buffer *buffer = pw_stream_dequeue_buffer(m_stream.get()))
        pw_stream_queue_buffer(m_stream.get(), buffer);
}

} // namespace tolvenary
