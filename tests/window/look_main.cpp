#include "tests/session/support/virtual_display.h"
#include "tests/ui/support/warning_watch.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

using tolvenary::session::PrivateSession;
using tolvenary::session::VirtualDisplay;

namespace
{

int runTests(int &argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    tolvenary::test::failOnWarnings();
    return RUN_ALL_TESTS();
}

} // namespace

// Windows that nobody sees: with "--on-screen" drawn by the renderer that most users have, on a screen of the test's
// own; else by the one that needs no screen.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (std::none_of(argv, argv + argc, [](std::string_view argument) { return argument == "--on-screen"; })) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
        return runTests(argc, argv);
    }
    const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
    PrivateSession session;
    const VirtualDisplay display(session, {.width = 1900, .height = 1500});
    session.environment().set("QT_QPA_PLATFORM", "xcb");
    session.environment().set("QT_SCALE_FACTOR", scale.toStdString());
    return runTests(argc, argv);
}
