#include "ui/motion.h"

namespace tolvenary
{

void Motion::setReduced(bool reduced)
{
    if (reduced == m_reduced)
        return;
    m_reduced = reduced;
    emit reducedChanged();
}

void Motion::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    emit pausedChanged();
}

} // namespace tolvenary
