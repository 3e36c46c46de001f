#include "ui/inline_markdown.h"

#include <QRegularExpression>

namespace tolvenary
{

namespace
{

const QRegularExpression &strong()
{
    static const QRegularExpression expression(QStringLiteral("\\*\\*(.+?)\\*\\*"));
    return expression;
}

const QRegularExpression &code()
{
    static const QRegularExpression expression(QStringLiteral("`(.+?)`"));
    return expression;
}

} // namespace

InlineMarkdown::InlineMarkdown(QObject *parent) : QObject(parent) {}

// The argument goes in last, so nothing in it is ever taken for a mark.
QString InlineMarkdown::markup(const QString &text, const QString &argument, const QString &codeFamily)
{
    QString result = text.toHtmlEscaped();
    result.replace(strong(), QStringLiteral("<b>\\1</b>"));
    result.replace(code(),
                   QStringLiteral("<span style=\"font-family:'") + codeFamily + QStringLiteral("'\">\\1</span>"));
    return result.replace(QStringLiteral("%1"), argument.toHtmlEscaped());
}

QString InlineMarkdown::plain(const QString &text, const QString &argument)
{
    QString result = text;
    result.replace(strong(), QStringLiteral("\\1"));
    result.replace(code(), QStringLiteral("\\1"));
    return result.replace(QStringLiteral("%1"), argument);
}

} // namespace tolvenary
