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

} // namespace tolvenary
