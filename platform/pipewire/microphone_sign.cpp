#include "platform/pipewire/microphone_sign.h"

#include <array>
#include <chrono>
#include <pipewire/pipewire.h>
#include <pipewire/stream.h>
#include <spa/param/audio/format-utils.h>

namespace tolvenary
{

namespace
{

/// If a sign is ended sooner than that, somebody wants none, and would end the next one, too.
constexpr auto shortestLife = std::chrono::seconds(1);

pw_properties *properties(const GraphSession &session)
{
    // Without a role: one for calls would make some session managers turn the music down.
    return pw_properties_new(PW_KEY_APP_NAME, "Tolvenary", PW_KEY_APP_ID, "com.tolvenary.app", PW_KEY_MEDIA_NAME,
                             "Microphone", PW_KEY_NODE_NAME, "com.tolvenary.microphone.sign", PW_KEY_NODE_DESCRIPTION,
                             "Tolvenary records", PW_KEY_NODE_GROUP, session.group().c_str(), PW_KEY_MEDIA_TYPE,
                             "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_NODE_PASSIVE, "true", nullptr);
}

} // namespace

// Apart from the sign, because it outlives it for a moment.
struct MicrophoneSign::Recording {
    Recording(GraphSession &owner, pw_stream *made) : session(owner), stream(made)
    {
        pw_stream_add_listener(stream.get(), hook.get(), events(), this);
    }

    void throwAway() const // real-time
    {
        if (pw_buffer *buffer = pw_stream_dequeue_buffer(stream.get()))
            pw_stream_queue_buffer(stream.get(), buffer);
    }

    std::optional<GlobalId> nodeId() const
    {
        const std::uint32_t id = pw_stream_get_node_id(stream.get());
        return id == SPA_ID_INVALID ? std::nullopt : std::optional(id);
    }

    static const pw_stream_events *events()
    {
        static const pw_stream_events table = [] {
            pw_stream_events made{};
            made.version = PW_VERSION_STREAM_EVENTS;
            made.state_changed = [](void *data, pw_stream_state, pw_stream_state, const char *) {
                static_cast<const Recording *>(data)->session.connection().scheduleUpdate();
            };
            made.process = [](void *data) { static_cast<const Recording *>(data)->throwAway(); };
            return made;
        }();
        return &table;
    }

    GraphSession &session;
    const std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();
    bool wasThere = false;
    PwHandle<pw_stream> stream;
    PwHandle<spa_hook> hook = makeHook(); // declared last: taken out before the stream goes
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
    hide();
}

// Like our node it is linked to a microphone that hangs, and would hold up others.
void MicrophoneSign::graphChanged()
{
    if (m_session.isMicrophoneHeld())
        return hide();
    showAgain();
    const std::optional<GlobalId> sign = m_recording ? m_recording->nodeId() : std::nullopt;
    if (sign && m_doubt.arises(m_session.graph(), *sign))
        m_session.readDefaultsAnew();
}

/// Also when somebody has ended it, as some mixers allow: the microphone is still in use.
void MicrophoneSign::showAgain()
{
    if (m_recording && m_recording->nodeId()) {
        m_recording->wasThere = true;
    } else if (m_recording && m_recording->wasThere &&
               std::chrono::steady_clock::now() - m_recording->since >= shortestLife) {
        m_recording.reset();
        m_doubt = {};
    }
    show();
}

void MicrophoneSign::serverLost()
{
    m_recording.reset();
    m_doubt = {};
}

void MicrophoneSign::hide()
{
    if (!m_recording)
        return;
    m_session.letGo(m_recording->nodeId(), m_recording);
    m_recording.reset();
    m_doubt = {};
}

/// Made on each connection, like all our nodes. If it fails, it is not tried again: the mix does without.
void MicrophoneSign::show()
{
    pw_core *core = m_session.connection().core();
    if (m_recording || core == nullptr)
        return;
    pw_stream *stream = pw_stream_new(core, "Microphone", properties(m_session));
    if (stream == nullptr)
        return;
    m_recording = std::make_shared<Recording>(m_session, stream);
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
    pw_stream_connect(stream, PW_DIRECTION_INPUT, PW_ID_ANY, static_cast<pw_stream_flags>(flags), &param, 1);
}

} // namespace tolvenary
