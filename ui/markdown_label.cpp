#include "ui/markdown_label.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tolvenary
{

namespace
{

/// The spans as far as `length` letters, with an ellipsis behind.
std::vector<MarkdownSpan> cut(std::vector<MarkdownSpan> spans, qsizetype length)
{
    for (MarkdownSpan &span : spans) {
        span.text.truncate(std::max<qsizetype>(0, length));
        length -= span.text.size();
    }
    spans.push_back({MarkdownSpan::Look::plain, QStringLiteral("…")});
    return spans;
}

} // namespace

MarkdownLabel::MarkdownLabel(QQuickItem *parent) : CrispItem(parent)
{
    connect(this, &MarkdownLabel::textChanged, this, &MarkdownLabel::layOut);
    connect(this, &MarkdownLabel::colorChanged, this, &MarkdownLabel::repaint);
}

QString MarkdownLabel::text() const
{
    return plainText(parseInlineMarkdown(m_markdown, m_argument));
}

void MarkdownLabel::componentComplete()
{
    CrispItem::componentComplete();
    layOut();
}

void MarkdownLabel::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    CrispItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width())
        layOut();
}

void MarkdownLabel::paint(QPainter &painter) const
{
    painter.setPen(m_color);
    for (int i = 0; i < m_layout->lineCount(); ++i) {
        const QTextLine line = m_layout->lineAt(i);
        const qreal baseline = i * m_face.lineHeight() + m_face.baseline();
        line.draw(&painter, {0, baseline - line.ascent() - line.y()});
    }
}

void MarkdownLabel::layOut()
{
    if (!isComponentComplete())
        return;
    const std::vector<MarkdownSpan> spans = parseInlineMarkdown(m_markdown, m_argument);
    m_layout = makeLayout(spans, INFINITY);
    setImplicitWidth(std::ceil(m_layout->lineCount() > 0 ? m_layout->lineAt(0).naturalTextWidth() : 0));
    // Rarely more than a few letters have to go; whoever cuts more has a window narrower than the panel's.
    m_layout = makeLayout(spans, width());
    for (qsizetype length = text().size() - 1; length > 0 && m_layout->lineCount() > m_lines; --length)
        m_layout = makeLayout(cut(spans, length), width());
    setImplicitHeight(std::max(1, m_layout->lineCount()) * m_face.lineHeight());
    repaint();
}

std::unique_ptr<QTextLayout> MarkdownLabel::makeLayout(const std::vector<MarkdownSpan> &spans, qreal width) const
{
    auto layout = std::make_unique<QTextLayout>(plainText(spans), m_face.font());
    QList<QTextLayout::FormatRange> formats;
    int start = 0;
    for (const MarkdownSpan &span : spans) {
        const int length = static_cast<int>(span.text.size());
        formats.append({start, length, format(span.look)});
        start += length;
    }
    layout->setFormats(formats);
    QTextOption option(m_mirrored ? Qt::AlignRight : Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine())
        line.setLineWidth(std::min(width, 1e6));
    layout->endLayout();
    return layout;
}

QTextCharFormat MarkdownLabel::format(MarkdownSpan::Look look) const
{
    QFont font = m_face.font();
    if (look == MarkdownSpan::Look::strong)
        font.setBold(true);
    if (look == MarkdownSpan::Look::code)
        font.setFamilies({m_codeFamily});
    QTextCharFormat format;
    format.setFont(font);
    return format;
}

} // namespace tolvenary
