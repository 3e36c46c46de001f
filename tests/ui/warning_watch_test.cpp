#include "tests/ui/support/warning_watch.h"

#include <QDebug>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>

namespace tolvenary::test
{

TEST(Warnings, failTheTestDuringWhichTheyCome)
{
    EXPECT_NONFATAL_FAILURE(qWarning() << "something is wrong", "something is wrong");
}

TEST(Warnings, ofBindingsFailItToo)
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQml; QtObject { property var wrong: missing.thing }", {});
    EXPECT_NONFATAL_FAILURE(std::unique_ptr<QObject>(component.create()), "missing is not defined");
}

} // namespace tolvenary::test
