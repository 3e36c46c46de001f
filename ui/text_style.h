#pragma once

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// A font with the line box that the layout gives it. The box counts, not the font's own line, so the panel keeps its
/// height whatever font stands in for a missing one.
class TextStyle
{
    Q_GADGET
    QML_VALUE_TYPE(textStyle)
    Q_PROPERTY(QFont font READ font CONSTANT FINAL)
    Q_PROPERTY(qreal lineHeight READ lineHeight CONSTANT FINAL)
    Q_PROPERTY(qreal digitWidth READ digitWidth CONSTANT FINAL)

  public:
    TextStyle() = default;
    /// The baseline lies that far below the top of each line box.
    TextStyle(const QFont &font, qreal lineHeight, qreal baseline)
        : m_font(font), m_lineHeight(lineHeight), m_baseline(baseline)
    {
    }

    QFont font() const { return m_font; }
    qreal lineHeight() const { return m_lineHeight; }
    qreal baseline() const { return m_baseline; }

    /// The room that the widest digit takes.
    qreal digitWidth() const;

    friend bool operator==(const TextStyle &, const TextStyle &) = default;

  private:
    QFont m_font;
    qreal m_lineHeight = 0;
    qreal m_baseline = 0;
};

} // namespace tolvenary
