#include "app/linux_platform.h"
#include "core/mix_coordinator.h"
#include "platform/audio_server.h"

#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <cstdio>
#include <cstdlib>

namespace
{

void settle(tolvenary::LinuxPlatform &platform)
{
    QEventLoop loop;
    platform.audioServer().settle(
        [&loop](bool /*answered*/) { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    loop.exec();
}

} // namespace

/// The program without its window: picks the process given, presses Start, and runs until it is killed.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    tolvenary::LinuxPlatform platform;
    tolvenary::MixCoordinator mix(platform);
    settle(platform);
    mix.refreshBlackHole();
    QCoro::waitFor(mix.refreshApps());
    mix.setSelectedAppID(argc > 1 ? std::atoi(argv[1]) : 0);
    QCoro::waitFor(mix.start());
    std::puts(mix.status().toUtf8().constData());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
