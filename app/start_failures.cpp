#include "app/start_failures.h"

#include <QCoreApplication>
#include <QString>

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvenary
{

namespace
{

// A message handler can reach only what lives outside of every object.
QtMessageHandler qtsOwn = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void say(const QString &line)
{
    std::fprintf(stderr, "tolvenary: %s\n", qUtf8Printable(line));
}

QString variable(const char *name)
{
    return qEnvironmentVariable(name);
}

QString whyNoWindow()
{
    if (!variable("WAYLAND_DISPLAY").isEmpty())
        return QStringLiteral("the desktop session at WAYLAND_DISPLAY=%1 cannot be reached.")
            .arg(variable("WAYLAND_DISPLAY"));
    if (!variable("DISPLAY").isEmpty())
        return QStringLiteral("the desktop session at DISPLAY=%1 cannot be reached.").arg(variable("DISPLAY"));
    return QStringLiteral("there is no desktop session here (WAYLAND_DISPLAY and DISPLAY are not set). Start it from a "
                          "desktop.");
}

/// While Qt looks for a desktop, it only matters that it finds none, not which ways it tried; about the runtime
/// directory everything has been said.
bool isToldByUs(const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("QStandardPaths:")))
        return true;
    return QCoreApplication::startingUp() && (QLatin1String(context.category).startsWith(QLatin1String("qt.qpa.")) ||
                                              message.startsWith(QLatin1String("Failed to create wl_display")));
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtFatalMsg && message.contains(QLatin1String("no Qt platform plugin could be initialized"))) {
        say(whyNoWindow());
        _exit(EXIT_FAILURE);
    }
    if (!isToldByUs(context, message))
        qtsOwn(type, context, message);
}

QString whyNoSound(const QString &directory)
{
    if (directory.isEmpty())
        return QStringLiteral("XDG_RUNTIME_DIR is not set: no sound server can be found.");
    struct stat found {
    };
    if (stat(qUtf8Printable(directory), &found) != 0)
        return QStringLiteral("XDG_RUNTIME_DIR=%1 does not exist: no sound server can be found.").arg(directory);
    if (found.st_uid != geteuid())
        return QStringLiteral("XDG_RUNTIME_DIR=%1 is another user's: start it as the user whose desktop this is.")
            .arg(directory);
    return {};
}

} // namespace

void tellStartFailuresInOneLine()
{
    qtsOwn = qInstallMessageHandler(handle);
    if (const QString why = whyNoSound(variable("XDG_RUNTIME_DIR")); !why.isEmpty())
        say(why);
}

} // namespace tolvenary
