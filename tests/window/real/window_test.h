#pragma once

#include "tests/session/support/mouse_and_keys.h"
#include "tests/session/support/x_window.h"
#include "tests/window/real/desktop.h"
#include "tests/window/real/panel_program.h"

#include <functional>
#include <gtest/gtest.h>

namespace tolvenary::session
{

/// The program on a desktop. The desktop is the suite's, the program is each test's own, launched when the test
/// asks for it. A program that has printed anything by the end of its test, or does not end well, fails it.
class WindowTest : public testing::Test
{
  protected:
    static void SetUpTestSuite() { openDesktop({}); }
    static void TearDownTestSuite() { s_desktop.reset(); }

    static void openDesktop(const DisplayOptions &display);
    static Desktop &desktop() { return *s_desktop; }

    void SetUp() override;
    void TearDown() override;

    /// Starts the program; its lists are filled when this returns, unless there is no device.
    void launch(const PanelProgram::Variables &variables = {{"QT_QPA_PLATFORM", "xcb"}});
    /// What a launch waits for besides: here, the window that the X server shows.
    virtual void awaitWindow();
    /// Where the window is on the screen.
    virtual ScreenBox place();
    /// From where the program counts when it says where something is.
    virtual ScreenPoint origin() { return {}; }

    PanelProgram &program() { return *m_program; }
    AccessibleWindow &panel() { return m_program->window(); }
    /// On X11 only.
    XWindow &window() { return *m_window; }

    bool isThere(const std::string &name, const std::string &role = {}) { return panel().find(name, role).has_value(); }
    bool isVisible(const std::string &name);
    /// Where it is on the screen.
    ScreenBox boxOf(const std::string &name, const std::string &role = {});
    double valueOf(const std::string &slider) { return panel().value(panel().await(slider, "slider")); }

    /// By assistive means: presses what has this name.
    void press(const std::string &name) { panel().act(panel().await(name)); }
    void clickOn(const std::string &name, const std::string &role = {}) { hands.click(boxOf(name, role).centre()); }
    void pick(const std::string &picker, const std::string &row);
    /// Picks the program that plays, presses Start, and waits until both sources count.
    void startMix();

    bool countsFrames() const;
    /// Whether the sound server holds nothing of the program any more.
    bool leavesNoSound();

    /// Waits until the condition holds; false when it never does.
    static bool eventually(const std::function<bool()> &condition);

    MouseAndKeys hands;

  private:
    void explainFailure();

    inline static std::unique_ptr<Desktop> s_desktop;
    std::unique_ptr<PanelProgram> m_program;
    std::unique_ptr<XWindow> m_window;
    double m_scale = 1;
};

} // namespace tolvenary::session
