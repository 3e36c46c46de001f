#include "ui/motion.h"

namespace tolvenary
{

void Motion::setReduced(bool reduced)
{
    if (reduced == m_reduced)
        return;
    m_reduced = reduced;
    Q_EMIT reducedChanged();
}

void Motion::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    Q_EMIT pausedChanged();
}

} // namespace tolvenary
