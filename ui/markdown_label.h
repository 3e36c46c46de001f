#pragma once

#include "ui/text_label.h"

namespace tolvenary
{

/// One of the panel's own texts with its inline Markdown. What stands in for %1 is shown verbatim. Thread: main, but
/// for the drawing.
class MarkdownLabel : public tolvenary::TextLabel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString markdown MEMBER m_markdown NOTIFY textChanged FINAL REQUIRED)
    Q_PROPERTY(QString argument MEMBER m_argument NOTIFY textChanged FINAL)
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

  public:
    using TextLabel::TextLabel;

    /// The words without their marks.
    QString text() const { return plainText(spans()); }

  protected:
    std::vector<MarkdownSpan> spans() const override { return parseInlineMarkdown(m_markdown, m_argument); }

  private:
    QString m_markdown;
    QString m_argument;
};

} // namespace tolvenary
