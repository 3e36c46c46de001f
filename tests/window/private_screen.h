#pragma once

#include "tests/session/support/child_process.h"
#include "tests/session/support/private_environment.h"

#include <memory>

namespace tolvenary::test
{

/// A display and a session bus of a test program's own, which the environment names while it lives. To be made before
/// the application object.
class PrivateScreen
{
  public:
    /// Throws std::runtime_error when there is no display, or no bus.
    /// Windows on it are drawn by the software renderer, or with GL.
    explicit PrivateScreen(bool withGL);

    /// Lets the application believe that assistive tools listen. To be called when there is one.
    void bringAssistiveTools();

    /// A window manager, from now on.
    void manageWindows();

  private:
    std::unique_ptr<session::ChildProcess> start(const session::Arguments &command);

    session::PrivateEnvironment m_environment;
    std::unique_ptr<session::ChildProcess> m_bus;
    std::unique_ptr<session::ChildProcess> m_server;
    std::unique_ptr<session::ChildProcess> m_windowManager;
};

} // namespace tolvenary::test
