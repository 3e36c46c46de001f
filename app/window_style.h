#pragma once

class QQuickWindow;

namespace tolvenary
{

/// Makes the window a dark panel without title bar, whose content reaches to all its edges. Can be repeated. Thread:
/// main.
void styleWindow(QQuickWindow &window);

/// Whether what lies behind a window's transparent places is sure to show there. Ask this, and call
/// QQuickWindow::setDefaultAlphaBuffer(), before the window is made.
bool isBlendedByCompositor();

} // namespace tolvenary
