#pragma once

#include "tests/session/support/private_session.h"

namespace tolvenary::bench
{

/// What does our work without us: one pw-loopback from the microphone to the device and one from what the speakers play
/// to the device. The session manager links them, the server adds them up.
class LoopbackPair
{
  public:
    explicit LoopbackPair(session::PrivateSession &session);

    /// Ends both at once, and does not wait for it.
    void end() const;

    std::vector<pid_t> processes() const { return {m_microphone->pid(), m_speakers->pid()}; }

    /// What all their nodes' names begin with.
    static constexpr const char *nodeNames = "loopback-";

  private:
    std::unique_ptr<session::ChildProcess> m_microphone;
    std::unique_ptr<session::ChildProcess> m_speakers;
};

} // namespace tolvenary::bench
