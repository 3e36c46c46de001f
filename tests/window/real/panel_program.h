#pragma once

#include "tests/session/support/accessible_window.h"
#include "tests/session/support/private_session.h"

#include <map>

namespace tolvenary::session
{

/// The program itself, started in a session, and its window as assistive software meets it. It is up when the
/// constructor returns, and gone at the latest with this object.
class PanelProgram
{
  public:
    using Variables = std::map<std::string, std::string>;

    /// With these environment variables besides the session's. Throws std::runtime_error when no window comes.
    PanelProgram(PrivateSession &session, const Variables &variables);

    pid_t pid() const { return m_process->pid(); }
    AccessibleWindow &window() { return *m_window; }
    ChildProcess &process() { return *m_process; }

    /// All that it printed so far.
    std::string messages() const { return m_process->output(); }

    /// The frames that the status line counts at the moment; 0 where it does not count.
    unsigned long microphoneFrames() const { return counted("mic:"); }
    unsigned long applicationFrames() const { return counted("app:"); }

  private:
    unsigned long counted(const std::string &what) const;

    std::unique_ptr<ChildProcess> m_process;
    std::unique_ptr<AccessibleWindow> m_window;
};

} // namespace tolvenary::session
