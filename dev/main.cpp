#include "app/tolvenary_app.h"
#include "dev/fake_sound.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

/// The real window on a made-up system, and a second window to control what that plays.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    tolvenary::FakePlatform platform;
    tolvenary::FakeSound sound(platform);
    tolvenary::TolvenaryApp app(platform);
    if (!app.show())
        return EXIT_FAILURE;

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("sound"), QVariant::fromValue(&sound)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/TolvenaryDev/FakeControls.qml")));
    return engine.rootObjects().isEmpty() ? EXIT_FAILURE : QGuiApplication::exec();
}
