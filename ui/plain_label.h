#pragma once

#include "ui/text_label.h"

namespace tolvenary
{

/// A text that is shown as it stands, whatever marks it holds. Thread: main, but for the drawing.
class PlainLabel : public tolvenary::TextLabel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY textChanged FINAL REQUIRED)

  public:
    using TextLabel::TextLabel;

  protected:
    std::vector<MarkdownSpan> spans() const override
    {
        QString text = m_text;
        return {{MarkdownSpan::Look::plain, text.replace(QLatin1Char('\n'), QChar::LineSeparator)}};
    }

  private:
    QString m_text;
};

} // namespace tolvenary
