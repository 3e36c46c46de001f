#pragma once

#include "tests/session/support/screen_box.h"

#include <string>
#include <vector>

namespace tolvenary::session
{

/// Mouse and keyboard of the display that DISPLAY names. What they do goes through the X server, as from a user's
/// hands: the window under the pointer and the one with the focus get it, whoever they are. (XTEST, by xdotool.)
class MouseAndKeys
{
  public:
    void moveTo(ScreenPoint point) const;
    /// The left button, where the pointer is.
    void press() const;
    void release() const;
    void click(ScreenPoint point) const;
    /// Turns the wheel by so many notches over the point; down when positive.
    void wheel(ScreenPoint point, int notches) const;

    /// Presses and releases keys one after the other, each by its X name: "Return", "shift+Tab", "a".
    void keys(const std::vector<std::string> &names) const;
};

} // namespace tolvenary::session
