#pragma once

#include "tests/session/support/private_session.h"
#include "tests/session/support/screen_box.h"

#include <QImage>

namespace tolvenary::session
{

enum class WindowManager {
    none,
    openbox,
    weston, ///< a Wayland compositor that fills the screen
};

struct DisplayOptions {
    int width = 1280;
    int height = 1000;
    WindowManager windowManager = WindowManager::openbox;
};

/// A screen that nobody looks at, and who manages the windows on it; DISPLAY points to it while it lives, and with a
/// Wayland compositor WAYLAND_DISPLAY does too.
class VirtualDisplay
{
  public:
    explicit VirtualDisplay(PrivateSession &session, const DisplayOptions &options = {});
    ~VirtualDisplay();

    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    ScreenBox size() const { return m_size; }

    /// What a Wayland compositor shows where there is no window.
    static constexpr unsigned background = 0xff406080;

    /// What is on the screen now; null when it cannot be read.
    QImage screenshot() const;

    /// Writes what is on the screen, cut to the box, as a PNG file. Returns whether that worked.
    bool saveScreenshot(const std::filesystem::path &file, const ScreenBox &box) const;

  private:
    void startServer(const DisplayOptions &options);
    void startOpenbox();
    void startWeston(const DisplayOptions &options);

    PrivateSession &m_session;
    ScreenBox m_size;
    std::filesystem::path m_frameBuffer;
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_windowManager;
};

} // namespace tolvenary::session
