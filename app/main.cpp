#include "app/descriptor_limit.h"
#include "app/linux_platform.h"
#include "app/quit_signals.h"
#include "app/renderer.h"
#include "app/start_failures.h"
#include "app/tolvenary_app.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQuickWindow>

#include <cstdlib>

int main(int, char **arguments)
{
    tolvenary::raiseDescriptorLimit();
    // There is no command line: only the program's name is passed on.
    int count = 1;
    tolvenary::tellStartFailuresInOneLine();
    // Nothing is stored, not even shaders: there are few, and each launch compiles them quickly.
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    QGuiApplication application(count, arguments);
    QGuiApplication::setApplicationName(QStringLiteral("Tolvenary"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.tolvenary.app"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.tolvenary.app")));

    if (tolvenary::wantsSoftwareRenderer())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);

    tolvenary::LinuxPlatform platform;
    tolvenary::TolvenaryApp app(platform);
    const tolvenary::QuitSignals quitSignals;
    return app.show() ? QGuiApplication::exec() : EXIT_FAILURE;
}
