#include "platform/pipewire/pipewire_audio_server.h"

namespace tolvenary
{

void PipeWireAudioServer::settle(std::function<void(bool answered)> done)
{
    const Connection::Lock lock(m_session.connection());
    m_session.connection().roundTrip(std::move(done));
}

} // namespace tolvenary
