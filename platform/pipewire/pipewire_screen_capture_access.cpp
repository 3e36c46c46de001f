#include "platform/pipewire/pipewire_screen_capture_access.h"

namespace tolvenary
{

bool PipeWireScreenCaptureAccess::CGPreflightScreenCaptureAccess()
{
    const Connection::Lock lock(m_session.connection());
    return !m_session.isCaptureDenied();
}

bool PipeWireScreenCaptureAccess::CGRequestScreenCaptureAccess()
{
    return CGPreflightScreenCaptureAccess();
}

} // namespace tolvenary
