#include "app/window_style.h"

#include <QQuickWindow>

namespace tolvenary
{

void styleWindow(QQuickWindow &window)
{
    // Setting a flag that is set already would still take the window off the screen and put it back.
    if (!window.flags().testFlag(Qt::FramelessWindowHint))
        window.setFlag(Qt::FramelessWindowHint);
    window.setColor(QColor::fromRgbF(0.04F, 0.03F, 0.1F, 1.0F));
}

} // namespace tolvenary
