#include "ui/text_style.h"

#include <QFontMetricsF>

#include <algorithm>

namespace tolvenary
{

qreal TextStyle::digitWidth() const
{
    const QFontMetricsF metrics(m_font);
    qreal widest = 0;
    for (const QChar digit : QStringLiteral("0123456789"))
        widest = std::max(widest, metrics.horizontalAdvance(digit));
    return widest;
}

} // namespace tolvenary
