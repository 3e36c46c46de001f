// What the twinkling of the stars costs, beside the least that anything moving can cost: one rectangle of three by
// three that fades in and out, in the same window. Scenes take turns; what counts is the ratio of the processor times.
// It brings a screen of its own: star_field_bench [ROUNDS]

#include "bench/median.h"
#include "tests/session/support/virtual_display.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>

Q_IMPORT_QML_PLUGIN(TolvenaryPlugin)

namespace
{

using tolvenary::bench::Spread;
using tolvenary::bench::spread;

constexpr int settleMilliseconds = 300;
constexpr int measureMilliseconds = 2000;

constexpr const char *background = R"(
import QtQuick
import Tolvenary
CosmicGradient {
    anchors.fill: parent
    base: [Theme.window, Theme.dusk, Theme.night]
    topGlow: Theme.faded(Theme.purple, 0.35)
    bottomGlow: Theme.faded(Theme.cyan, 0.18)
    glowStart: 30
    topGlowEnd: 420
    bottomGlowEnd: 380
})";

constexpr const char *rectangle = R"(
import QtQuick
Rectangle {
    width: 3
    height: 3
    SequentialAnimation on opacity {
        loops: Animation.Infinite
        NumberAnimation { from: 1; to: 0.4; duration: 1600; easing.type: Easing.InOutQuad }
        NumberAnimation { from: 0.4; to: 1; duration: 1600; easing.type: Easing.InOutQuad }
    }
})";

constexpr const char *stars = R"(
import QtQuick
import Tolvenary
StarsView {
    anchors.fill: parent
    opacity: 0.85
})";

struct Scene {
    const char *name;
    const char *qml; ///< empty: the background alone
    std::vector<double> load = {};
    std::vector<double> frames = {};
};

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

std::unique_ptr<QQuickItem> make(QQmlEngine &engine, const char *qml, QQuickItem *parent)
{
    QQmlComponent component(&engine);
    component.setData(qml, QUrl());
    std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem *>(
        component.createWithInitialProperties({{QStringLiteral("parent"), QVariant::fromValue(parent)}})));
    if (!item) {
        std::fprintf(stderr, "%s\n", qPrintable(component.errorString()));
        std::exit(EXIT_FAILURE);
    }
    return item;
}

void measure(Scene &scene, QQmlEngine &engine, QQuickWindow &window)
{
    const auto item = *scene.qml ? make(engine, scene.qml, window.contentItem()) : nullptr;
    runFor(settleMilliseconds);
    int frames = 0;
    const auto counting = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    const double before = processorSeconds();
    QElapsedTimer wall;
    wall.start();
    runFor(measureMilliseconds);
    const double seconds = static_cast<double>(wall.nsecsElapsed()) * 1e-9;
    scene.load.push_back((processorSeconds() - before) / seconds);
    scene.frames.push_back(frames / seconds);
    QObject::disconnect(counting);
}

} // namespace

int main(int argc, char **argv)
{
    tolvenary::session::PrivateSession session;
    const tolvenary::session::VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");
    const QGuiApplication application(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQuickWindow window;
    window.resize(520, 541);
    const auto ground = make(engine, background, window.contentItem());
    window.show();

    std::vector<Scene> scenes{{"nothing that moves", ""}, {"one rectangle", rectangle}, {"140 stars", stars}};
    for (int round = 0; round < rounds; ++round)
        for (Scene &scene : scenes)
            measure(scene, engine, window);

    const double floor = spread(scenes[1].load).median;
    const bool software = window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    std::printf("%s renderer, %d rounds of %d ms: processor time, in parts of one core\n\n",
                software ? "software" : "GL", rounds, measureMilliseconds);
    std::printf("%-20s %8s %8s %8s %8s %8s\n", "", "median", "least", "most", "frames/s", "ratio");
    for (const Scene &scene : scenes) {
        const Spread load = spread(scene.load);
        std::printf("%-20s %7.2f%% %7.2f%% %7.2f%% %8.1f %8.2f\n", scene.name, 100 * load.median, 100 * load.least,
                    100 * load.most, spread(scene.frames).median, load.median / floor);
    }
    return EXIT_SUCCESS;
}
