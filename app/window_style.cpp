#include "app/window_style.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace tolvenary
{

void styleWindow(QQuickWindow &window)
{
    // Setting a flag that is set already would still take the window off the screen and put it back.
    if (!window.flags().testFlag(Qt::FramelessWindowHint))
        window.setFlag(Qt::FramelessWindowHint);
    // A blended window is rounded: where its corners are cut off, what lies behind it shows.
    window.setColor(window.requestedFormat().hasAlpha() ? QColor(Qt::transparent)
                                                        : QColor::fromRgbF(0.04F, 0.03F, 0.1F, 1.0F));
}

bool isBlendedByCompositor()
{
    // On X11 a compositor may come and go while the window stands; without one, its corners would be black.
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace tolvenary
