#pragma once

class QQuickWindow;

namespace tolvenary
{

/// Makes the window a dark panel without title bar whose content reaches to all its edges. Bears being run again.
/// Thread: main.
void styleWindow(QQuickWindow &window);

} // namespace tolvenary
