#include <QCoreApplication>

#include <gtest/gtest.h>

// The coordinator's coroutines and its meter need the main thread's event loop.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
