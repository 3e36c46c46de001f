#include "tests/session/support/accessible_window.h"
#include "tests/session/support/virtual_display.h"
#include "tests/session/support/wait_until.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

// The window for who works on it: on a made-up system, beside the controls of what that plays.

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

int argumentCount = 1;
char programName[] = "dev-test";
char *argumentValues[] = {programName, nullptr};

} // namespace

TEST(DevelopmentWindow, mixesWhatTheSlidersOfTheFakeSystemSay)
{
    PrivateSession session;
    const QCoreApplication application(argumentCount, argumentValues);
    session.stopSoundServers();
    const VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");
    session.environment().set("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    const auto program = session.start({TOLVENARY_DEV});
    const AccessibleWindow windows(program->pid());
    const auto eventuallySays = [&](const std::string &text) {
        return waitUntil([&] { return windows.find(text).has_value(); }, 15s);
    };

    windows.act(windows.await("App", "combo box"));
    windows.act(windows.await("Music Box", "list item"));
    EXPECT_TRUE(eventuallySays("In the device: 0.00"));
    windows.act(windows.await("Start", "push button"));
    EXPECT_TRUE(waitUntil([&] { return !windows.textWith("Running → ").empty(); }, 15s));
    windows.setValue(windows.await("Music", "slider"), 0);
    windows.setValue(windows.await("Voice", "slider"), 0.5);
    EXPECT_TRUE(eventuallySays("In the device: 0.50"));
    windows.act(windows.await("Unplug device"));
    windows.act(windows.await("Stop", "push button"));
    windows.act(windows.await("Refresh devices"));
    EXPECT_TRUE(waitUntil([&] { return windows.find("Re-scan").has_value(); }, 15s));
    EXPECT_EQ(program->output(), "");
}

} // namespace tolvenary::session
