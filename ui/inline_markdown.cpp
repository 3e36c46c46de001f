#include "ui/inline_markdown.h"

#include <QStringView>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace tolvenary
{

namespace
{

void append(std::vector<MarkdownSpan> &spans, MarkdownSpan::Look look, const QString &text, const QString &argument)
{
    if (!text.isEmpty())
        spans.push_back({look, QString(text).replace(QStringLiteral("%1"), argument)});
}

/// What stands between two equal marks, and where the second one ends; -1 where no pair with something in it begins.
struct Marked {
    MarkdownSpan::Look look = MarkdownSpan::Look::plain;
    QString text = {};
    qsizetype end = -1;
};

Marked markedAt(const QString &markdown, qsizetype begin)
{
    const bool strong = QStringView(markdown).mid(begin).startsWith(u"**");
    if (!strong && markdown[begin] != u'`')
        return {};
    const QStringView mark = strong ? QStringView(u"**") : QStringView(u"`");
    const qsizetype first = begin + mark.size();
    const qsizetype last = markdown.indexOf(mark, first + 1);
    if (last < 0)
        return {};
    return {strong ? MarkdownSpan::Look::strong : MarkdownSpan::Look::code, markdown.mid(first, last - first),
            last + mark.size()};
}

/// Where the last letter ends that lies before `length` as a whole: of half a letter a box would be drawn, or a letter
/// without its accent.
qsizetype endOfLetters(const QString &text, qsizetype length)
{
    if (length >= text.size())
        return text.size();
    // What follows decides with its first letter, two units at most; a text may be endless.
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, QStringView(text).left(length + 2));
    letters.setPosition(length);
    return letters.isAtBoundary() ? length : std::max<qsizetype>(0, letters.toPreviousBoundary());
}

} // namespace

// The argument goes in when the marks are gone, so nothing in it is ever taken for one. Read by hand: a regular
// expression would be compiled, and its library brought into memory, for two short texts.
std::vector<MarkdownSpan> parseInlineMarkdown(const QString &markdown, const QString &argument)
{
    std::vector<MarkdownSpan> spans;
    qsizetype done = 0;
    for (qsizetype at = 0; at < markdown.size();) {
        const Marked marked = markedAt(markdown, at);
        if (marked.end < 0) {
            ++at;
            continue;
        }
        append(spans, MarkdownSpan::Look::plain, markdown.mid(done, at - done), argument);
        append(spans, marked.look, marked.text, argument);
        at = done = marked.end;
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

std::vector<MarkdownSpan> cutBehind(std::vector<MarkdownSpan> spans, qsizetype length)
{
    for (MarkdownSpan &span : spans) {
        const qsizetype room = std::max<qsizetype>(0, length);
        length -= span.text.size();
        span.text.truncate(endOfLetters(span.text, room));
    }
    spans.push_back({MarkdownSpan::Look::plain, QStringLiteral("…")});
    return spans;
}

} // namespace tolvenary
