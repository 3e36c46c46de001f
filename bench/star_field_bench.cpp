// What the twinkling of the stars costs, beside the least that anything moving can cost: one rectangle of three by
// three that fades in and out, in the same window. Scenes take turns; what counts is the ratio of the processor times.
// It brings a screen of its own: star_field_bench software|gl [ROUNDS]

#include "bench/report.h"
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
#include <string_view>
#include <tuple>

Q_IMPORT_QML_PLUGIN(TolvenaryPlugin)

namespace
{

constexpr int settleMilliseconds = 300;
constexpr int measureMilliseconds = 1000;

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
    const double before = processorSeconds();
    QElapsedTimer wall;
    wall.start();
    runFor(measureMilliseconds);
    const double seconds = static_cast<double>(wall.nsecsElapsed()) * 1e-9;
    scene.load.push_back(100 * (processorSeconds() - before) / seconds);
}

} // namespace

int main(int argc, char **argv)
{
    const bool software = argc > 1 && std::string_view(argv[1]) == "software";
    if (argc < 2 || (!software && std::string_view(argv[1]) != "gl")) {
        std::fprintf(stderr, "usage: star_field_bench software|gl [ROUNDS]\n");
        return EXIT_FAILURE;
    }
    QQuickWindow::setGraphicsApi(software ? QSGRendererInterface::Software : QSGRendererInterface::OpenGL);
    tolvenary::session::PrivateSession session;
    const tolvenary::session::VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");
    const QGuiApplication application(argc, argv);
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 9;

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

    const bool isSoftware = window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    const std::string part = isSoftware ? "Stars" : "Stars, with GL";
    const auto &[still, rectangle, stars] = std::tie(scenes[0], scenes[1], scenes[2]);
    tolvenary::bench::report(
        {part, "twinkling", "one animated rectangle", "% of one", stars.load, rectangle.load, 1.3});
    tolvenary::bench::report({part, "the same window at rest", "", "% of one", still.load, {}, {}, 0.1});
    return EXIT_SUCCESS;
}
