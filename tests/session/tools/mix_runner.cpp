#include "app/linux_platform.h"
#include "core/mix_coordinator.h"
#include "platform/audio_server.h"

#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace
{

void settle(tolvenary::LinuxPlatform &platform)
{
    QEventLoop loop;
    platform.audioServer().settle(
        [&loop](bool /*answered*/) { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    loop.exec();
}

/// Both sliders, as somebody moves them who cannot decide: between half and one and a half.
void moveGains(tolvenary::MixCoordinator &mix, int step)
{
    mix.setMicGain(static_cast<float>(1 + 0.5 * std::sin(step * 0.1)));
    mix.setAppGain(static_cast<float>(1 + 0.5 * std::cos(step * 0.07)));
}

} // namespace

/// The program without its window: picks the process given, presses Start, and runs until it is killed. With the word
/// "move" behind it the gains move all the while; with "stop" it presses Stop after some seconds and ends, so that what
/// is left then can be looked for; well if both sources were heard.
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
    QTimer hand;
    int step = 0;
    QObject::connect(&hand, &QTimer::timeout, &hand, [&] { moveGains(mix, ++step); });
    const std::string_view wish = argc > 2 ? argv[2] : "";
    if (wish == "move")
        hand.start(std::chrono::milliseconds(50));
    const auto stop = [&] {
        const bool heardBoth =
            mix.property("micFrames").toULongLong() > 0 && mix.property("appFrames").toULongLong() > 0;
        std::puts(mix.status().toUtf8().constData());
        mix.teardown();
        QCoreApplication::exit(heardBoth ? 0 : 1);
    };
    if (wish == "stop")
        QTimer::singleShot(std::chrono::seconds(5), &hand, stop);
    return QCoreApplication::exec();
}
