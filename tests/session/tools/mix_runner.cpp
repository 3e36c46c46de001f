#include "app/linux_platform.h"
#include "core/mix_coordinator.h"

#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <cstdio>
#include <cstdlib>

namespace
{

QCoro::Task<void> run(tolvenary::LinuxPlatform &platform, tolvenary::MixCoordinator &mix, int pick)
{
    platform.audioServer().settle([&mix, pick](bool /*answered*/) {
        QMetaObject::invokeMethod(&mix, [&mix, pick]() -> void {
            mix.refreshBlackHole();
            mix.setProperty("selectedAppID", pick);
        });
    });
    while (mix.property("selectedAppID").toInt() != pick)
        co_await QCoro::sleepFor(std::chrono::milliseconds(10));
    co_await mix.refreshApps();
    co_await mix.start();
    std::puts(mix.property("status").toString().toUtf8().constData());
}

} // namespace

/// The program without its window: picks the process given, presses Start, and runs until it is killed.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    tolvenary::LinuxPlatform platform;
    tolvenary::MixCoordinator mix(platform);
    const auto running = run(platform, mix, argc > 1 ? std::atoi(argv[1]) : 0);
    return QCoreApplication::exec();
}
