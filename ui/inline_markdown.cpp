#include "ui/inline_markdown.h"

#include <QRegularExpression>

namespace tolvenary
{

namespace
{

void append(std::vector<MarkdownSpan> &spans, MarkdownSpan::Look look, const QString &text, const QString &argument)
{
    if (!text.isEmpty())
        spans.push_back({look, QString(text).replace(QStringLiteral("%1"), argument)});
}

} // namespace

// The argument goes in when the marks are gone, so nothing in it is ever taken for one.
std::vector<MarkdownSpan> parseInlineMarkdown(const QString &markdown, const QString &argument)
{
    static const QRegularExpression marked(QStringLiteral("\\*\\*(.+?)\\*\\*|`(.+?)`"));
    std::vector<MarkdownSpan> spans;
    qsizetype done = 0;
    for (const QRegularExpressionMatch &match : marked.globalMatch(markdown)) {
        append(spans, MarkdownSpan::Look::plain, markdown.mid(done, match.capturedStart() - done), argument);
        append(spans, MarkdownSpan::Look::strong, match.captured(1), argument);
        append(spans, MarkdownSpan::Look::code, match.captured(2), argument);
        done = match.capturedEnd();
    }
    append(spans, MarkdownSpan::Look::plain, markdown.mid(done), argument);
    return spans;
}

QString plainText(const std::vector<MarkdownSpan> &spans)
{
    QString text;
    for (const MarkdownSpan &span : spans)
        text += span.text;
    return text;
}

} // namespace tolvenary
