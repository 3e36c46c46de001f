#include "tests/window/qml/stage_object.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(TolvenaryPlugin)

namespace tolvenary::test
{

/// What Quick Test asks of a test program before it loads the tests.
class Setup : public QObject
{
    Q_OBJECT

  public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath("qrc:/qt/qml");
        qmlRegisterType<StageObject>("TolvenaryTest", 1, 0, "Stage");
    }
};

} // namespace tolvenary::test

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QTEST_SET_MAIN_SOURCE_PATH
    tolvenary::test::Setup setup;
    return quick_test_main_with_setup(argc, argv, "window_qml", QUICK_TEST_SOURCE_DIR, &setup);
}

#include "main.moc"
