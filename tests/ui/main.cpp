#include "tests/ui/support/warning_watch.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

// Fonts and items need a GUI application; windows are drawn where no screen is needed.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    tolvenary::test::failOnWarnings();
    return RUN_ALL_TESTS();
}
