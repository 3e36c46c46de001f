#pragma once

#include "tests/session/support/accessible_window.h"
#include "tests/session/support/private_session.h"

#include <QImage>

namespace tolvenary::session
{

/// A screen that nobody looks at, with a window manager; DISPLAY points to it while it lives.
class VirtualDisplay
{
  public:
    explicit VirtualDisplay(PrivateSession &session, int width = 1280, int height = 1000);
    ~VirtualDisplay();

    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    /// What is on the screen now; null when it cannot be read.
    QImage screenshot() const;
    /// Writes what is on the screen, cut to the box, as a PNG file. Returns whether that worked.
    bool saveScreenshot(const std::filesystem::path &file, const AccessibleBox &box) const;

  private:
    PrivateSession &m_session;
    std::filesystem::path m_frameBuffer;
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_windowManager;
};

} // namespace tolvenary::session
