// The least that a window drawn by Qt Quick can be: one rectangle, of as many colours as a picture is known by.

#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData(R"(
import QtQuick
Window {
    visible: true
    width: 520
    height: 541
    title: "Empty"
    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: "black" }
            GradientStop { position: 1; color: "white" }
        }
    }
})");
    return engine.rootObjects().isEmpty() ? EXIT_FAILURE : QGuiApplication::exec();
}
