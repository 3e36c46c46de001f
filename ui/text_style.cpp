#include "ui/text_style.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace tolvenary
{

TextStyle::TextStyle(const QFont &font, qreal lineHeight, qreal baseline)
    : m_font(font), m_lineHeight(lineHeight), m_baseline(baseline)
{
    const QFontMetricsF metrics(font);
    m_above = baseline - metrics.ascent();
    m_below = std::min(lineHeight - std::ceil(metrics.ascent() + metrics.descent()), 0.0) - m_above;
}

} // namespace tolvenary
