#include "tests/ui/support/warning_watch.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

// Fonts and items need a GUI application; no window is shown.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    tolvenary::test::failOnWarnings();
    return RUN_ALL_TESTS();
}
