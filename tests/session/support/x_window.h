#pragma once

#include "tests/session/support/screen_box.h"

#include <optional>
#include <string>
#include <sys/types.h>

namespace tolvenary::session
{

/// A top-level window of another process on the display that DISPLAY names, as the X server and the window manager know
/// it.
class XWindow
{
  public:
    /// The process's visible window with this title; waits for it, and throws std::runtime_error when it does not come.
    XWindow(pid_t process, const std::string &title);

    /// The content, without what a window manager may have put around it.
    ScreenBox geometry() const;
    /// What stands in the window's property, as xprop writes it; empty where there is no such property.
    std::string property(const std::string &name) const;

    bool isOnScreen() const;
    bool isIconic() const;
    bool isMaximised() const;

    /// Asks the window manager to bring it back from wherever it is and to give it the focus.
    void activate() const;

  private:
    std::string m_id;
};

} // namespace tolvenary::session
