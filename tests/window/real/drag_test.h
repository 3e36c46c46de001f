#pragma once

#include "tests/window/real/window_test.h"

namespace tolvenary::session
{

/// For tests that take the window itself with the mouse.
class DragTest : public WindowTest
{
  protected:
    /// A place in the window where there is no control: in the row of the title, at its right.
    ScreenPoint emptyPlace();

    /// Presses at the place and moves the pointer by `by`, slowly at first until the window follows.
    void take(ScreenPoint from, ScreenPoint by);
    /// take(), and releases.
    void drag(ScreenPoint from, ScreenPoint by);

    /// But for how far the last drag went before the window manager took over from the program.
    bool eventuallyIsAbout(const ScreenBox &box);
    static ScreenBox moved(ScreenBox box, ScreenPoint by);

    /// Moves the pointer about the window with no button down, and waits until the window has answered all of it.
    void wander();

  private:
    int m_lag = 0;
};

} // namespace tolvenary::session
