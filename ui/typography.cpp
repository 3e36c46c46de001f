#include "ui/typography.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>

namespace tolvenary
{

namespace
{

constexpr qreal largestOrdinaryPoints = 11;
constexpr qreal largestScale = 2;

qreal scaleOfUser()
{
    const qreal points = QGuiApplication::font().pointSizeF();
    return std::clamp(points / largestOrdinaryPoints, 1.0, largestScale);
}

} // namespace

Typography::Typography(QObject *parent) : QObject(parent), m_scale(scaleOfUser())
{
    qGuiApp->installEventFilter(this);
}

TextStyle Typography::title() const
{
    return style(Design::rounded, QFont::Bold, {30, 36, 29});
}

TextStyle Typography::heading() const
{
    return style(Design::rounded, QFont::Bold, {11, 14, 11, 1.2});
}

TextStyle Typography::body() const
{
    return style(Design::standard, QFont::Normal, {13, 16, 12});
}

TextStyle Typography::callout() const
{
    return style(Design::standard, QFont::Normal, {12, 15, 11.5});
}

TextStyle Typography::caption() const
{
    return style(Design::standard, QFont::Normal, {10, 13, 10});
}

TextStyle Typography::label() const
{
    return style(Design::standard, QFont::Medium, {12, 15, 11.5});
}

// The rounded family has no semibold; its bold is the next in weight.
TextStyle Typography::readOut() const
{
    return style(Design::rounded, QFont::Bold, {12, 15, 12});
}

TextStyle Typography::mainButton() const
{
    return style(Design::standard, QFont::DemiBold, {13, 16, 12});
}

QString Typography::monospacedFamily() const
{
    return QStringLiteral("Noto Sans Mono");
}

bool Typography::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange && m_scale != scaleOfUser()) {
        m_scale = scaleOfUser();
        Q_EMIT scaleChanged();
    }
    return QObject::eventFilter(watched, event);
}

TextStyle Typography::style(Design design, QFont::Weight weight, const Measures &measures) const
{
    // The rounded family lacks some signs (the arrow of a heading): the standard one is asked before any other.
    QStringList families{QStringLiteral("Inter")};
    if (design == Design::rounded)
        families.prepend(QStringLiteral("Quicksand"));
    // Where neither is installed, what the user reads everything else in.
    QFont font(families + QGuiApplication::font().families());
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(qRound(measures.size * m_scale));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (measures.tracking != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, measures.tracking * m_scale);
    return {font, measures.lineHeight * m_scale, measures.baseline * m_scale};
}

} // namespace tolvenary
