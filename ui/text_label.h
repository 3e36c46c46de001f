#pragma once

#include "ui/crisp_item.h"
#include "ui/inline_markdown.h"
#include "ui/text_style.h"

#include <QColor>
#include <QTextLayout>

#include <memory>

namespace tolvenary
{

/// A text of the panel in the line boxes of its style, its letters drawn by their outlines onto whole pixels: the same
/// weight and the same places under every renderer, at every scale. It breaks at its width; what does not go into the
/// lines allowed is cut between letters, with an ellipsis. Thread: main, but for the drawing.
class TextLabel : public tolvenary::CrispItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(tolvenary::TextStyle face MEMBER m_face NOTIFY textChanged FINAL REQUIRED)
    Q_PROPERTY(QString codeFamily MEMBER m_codeFamily NOTIFY textChanged FINAL)
    Q_PROPERTY(int lines MEMBER m_lines NOTIFY textChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY textChanged FINAL)
    Q_PROPERTY(bool centered MEMBER m_centered NOTIFY textChanged FINAL)
    Q_PROPERTY(int lineCount READ lineCount NOTIFY laidOut FINAL)
    Q_PROPERTY(qreal contentWidth READ contentWidth NOTIFY laidOut FINAL)
    Q_PROPERTY(bool truncated READ isTruncated NOTIFY laidOut FINAL)

  public:
    explicit TextLabel(QQuickItem *parent = nullptr);

    int lineCount() const { return m_layout ? m_layout->lineCount() : 0; }
    /// How wide the widest line is, in points.
    qreal contentWidth() const;
    bool isTruncated() const { return m_truncated; }

  Q_SIGNALS:
    void textChanged();
    void colorChanged();
    void laidOut();

  protected:
    virtual std::vector<MarkdownSpan> spans() const = 0;

    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void paint(QPainter &painter) const override;
    qreal bleed() const override;

  private:
    void layOut();
    void cutToLines(const std::vector<MarkdownSpan> &spans);
    std::unique_ptr<QTextLayout> makeLayout(const std::vector<MarkdownSpan> &spans, qreal width) const;
    QTextCharFormat format(MarkdownSpan::Look look) const;
    bool fits(const QTextLayout &layout) const { return m_lines < 1 || layout.lineCount() <= m_lines; }

    TextStyle m_face;
    QString m_codeFamily;
    int m_lines = 1; ///< allowed; 0 for as many as it takes
    QColor m_color = Qt::white;
    bool m_mirrored = false;
    bool m_centered = false;
    bool m_truncated = false;
    std::unique_ptr<QTextLayout> m_layout;
};

} // namespace tolvenary
