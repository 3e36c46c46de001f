#pragma once

#include "ui/crisp_item.h"
#include "ui/inline_markdown.h"
#include "ui/text_style.h"

#include <QColor>
#include <QTextLayout>

#include <memory>

namespace tolvenary
{

/// One of the panel's own texts with its inline Markdown, in the line boxes of its style; text past the last line
/// allowed is cut with an ellipsis. What stands in for %1 is shown verbatim. Thread: main, but for the drawing.
class MarkdownLabel : public tolvenary::CrispItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString markdown MEMBER m_markdown NOTIFY textChanged FINAL REQUIRED)
    Q_PROPERTY(QString argument MEMBER m_argument NOTIFY textChanged FINAL)
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)
    Q_PROPERTY(tolvenary::TextStyle face MEMBER m_face NOTIFY textChanged FINAL REQUIRED)
    Q_PROPERTY(QString codeFamily MEMBER m_codeFamily NOTIFY textChanged FINAL)
    Q_PROPERTY(int lines MEMBER m_lines NOTIFY textChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY textChanged FINAL)

  public:
    explicit MarkdownLabel(QQuickItem *parent = nullptr);

    /// The words without their marks.
    QString text() const;

    int lineCount() const { return m_layout ? m_layout->lineCount() : 0; }

  signals:
    void textChanged();
    void colorChanged();

  protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void paint(QPainter &painter) const override;

  private:
    void layOut();
    std::unique_ptr<QTextLayout> makeLayout(const std::vector<MarkdownSpan> &spans, qreal width) const;
    QTextCharFormat format(MarkdownSpan::Look look) const;

    QString m_markdown;
    QString m_argument;
    TextStyle m_face;
    QString m_codeFamily;
    int m_lines = 1;
    QColor m_color = Qt::white;
    bool m_mirrored = false;
    std::unique_ptr<QTextLayout> m_layout;
};

} // namespace tolvenary
