#pragma once

#include <QString>

#include <vector>

namespace tolvenary
{

/// A stretch of text in one look.
struct MarkdownSpan {
    enum class Look { plain, strong, code };

    Look look = Look::plain;
    QString text;

    friend bool operator==(const MarkdownSpan &, const MarkdownSpan &) = default;
};

/// Takes the inline Markdown of one of the panel's own texts apart: **strong** and `code`. What is put in for %1 comes
/// from outside and is taken as it stands, whatever marks it holds.
std::vector<MarkdownSpan> parseInlineMarkdown(const QString &markdown, const QString &argument = {});

/// The text without its marks, as it is read aloud.
QString plainText(const std::vector<MarkdownSpan> &spans);

/// The spans as far as `length` units of their text, but never within a letter, with an ellipsis behind.
std::vector<MarkdownSpan> cutBehind(std::vector<MarkdownSpan> spans, qsizetype length);

} // namespace tolvenary
