#pragma once

#include "platform/pipewire/graph_session.h"
#include "platform/screen_capture_access.h"

namespace tolvenary
{

/// Other programs' sound is granted or denied by the sound server's own rights of our client.
class PipeWireScreenCaptureAccess final : public ScreenCaptureAccess
{
  public:
    explicit PipeWireScreenCaptureAccess(GraphSession &session) : m_session(session) {}

    bool CGPreflightScreenCaptureAccess() override;
    /// Nobody can be asked on Linux: reads the rights once more.
    bool CGRequestScreenCaptureAccess() override;

  private:
    GraphSession &m_session;
};

} // namespace tolvenary
