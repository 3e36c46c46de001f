#include "tests/ui/support/warning_watch.h"

#include <QDebug>

#include <iostream>

namespace tolvenary::test
{

namespace
{

void failOn(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        std::cerr << message.toStdString() << '\n';
    else
        ADD_FAILURE() << "a warning: " << message.toStdString();
}

} // namespace

void WarningWatch::OnTestStart(const testing::TestInfo & /*test*/)
{
    qInstallMessageHandler(failOn);
}

void WarningWatch::OnTestEnd(const testing::TestInfo & /*test*/)
{
    qInstallMessageHandler(nullptr);
}

void failOnWarnings()
{
    testing::UnitTest::GetInstance()->listeners().Append(new WarningWatch);
}

} // namespace tolvenary::test
