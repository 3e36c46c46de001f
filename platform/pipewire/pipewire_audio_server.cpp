#include "platform/pipewire/pipewire_audio_server.h"

namespace tolvenary
{

void PipeWireAudioServer::settle(std::function<void(bool answered)> done)
{
    const Connection::Lock lock(m_session.connection());
    if (m_session.microphone() == nullptr)
        m_session.readDefaultsAnew();
    m_session.connection().roundTrip(std::move(done));
}

AudioServerState PipeWireAudioServer::state()
{
    Connection &connection = m_session.connection();
    const Connection::Lock lock(connection);
    if (connection.core() == nullptr)
        return AudioServerState::gone;
    if (!connection.isResponsive())
        return AudioServerState::hangs;
    if (!connection.isAsking())
        connection.roundTrip([](bool) {});
    return AudioServerState::answers;
}

} // namespace tolvenary
