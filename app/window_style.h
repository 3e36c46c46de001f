#pragma once

class QQuickWindow;

namespace tolvenary
{

/// Makes the window a dark panel without title bar whose content reaches to all its edges. Bears being run again.
/// Thread: main.
void styleWindow(QQuickWindow &window);

/// Whether what lies behind a window's transparent places is sure to be shown there. To be asked, and to be followed by
/// QQuickWindow::setDefaultAlphaBuffer(), before the window is made.
bool isBlendedByCompositor();

} // namespace tolvenary
