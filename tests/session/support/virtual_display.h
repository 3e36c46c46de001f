#pragma once

#include "tests/session/support/private_session.h"
#include "tests/session/support/screen_box.h"

#include <QImage>

namespace tolvenary::session
{

struct DisplayOptions {
    int width = 1280;
    int height = 1000;
    bool windowManager = true;
};

/// A screen that nobody looks at, with a window manager if wanted; DISPLAY points to it while it lives.
class VirtualDisplay
{
  public:
    explicit VirtualDisplay(PrivateSession &session, const DisplayOptions &options = {});
    ~VirtualDisplay();

    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    /// What is on the screen now; null when it cannot be read.
    QImage screenshot() const;

    /// Writes what is on the screen, cut to the box, as a PNG file. Returns whether that worked.
    bool saveScreenshot(const std::filesystem::path &file, const ScreenBox &box) const;

  private:
    void startServer(const DisplayOptions &options);
    void startWindowManager();

    PrivateSession &m_session;
    std::filesystem::path m_frameBuffer;
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_windowManager;
};

} // namespace tolvenary::session
