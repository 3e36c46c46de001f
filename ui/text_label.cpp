#include "ui/text_label.h"

#include "ui/glyph_outlines.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tolvenary
{

namespace
{

/// No line of any screen has room for more letters. A name from elsewhere may have a million of them, and to lay all
/// out would hold the window up for minutes.
constexpr qsizetype fullLine = 2048;

} // namespace

TextLabel::TextLabel(QQuickItem *parent) : CrispItem(parent)
{
    connect(this, &TextLabel::textChanged, this, &TextLabel::layOut);
    connect(this, &TextLabel::colorChanged, this, &TextLabel::repaint);
}

qreal TextLabel::contentWidth() const
{
    qreal widest = 0;
    for (int i = 0; i < lineCount(); ++i)
        widest = std::max(widest, m_layout->lineAt(i).naturalTextWidth());
    return widest;
}

void TextLabel::componentComplete()
{
    CrispItem::componentComplete();
    layOut();
}

void TextLabel::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    CrispItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width())
        layOut();
}

void TextLabel::paint(QPainter &painter) const
{
    const qreal scale = painter.transform().m22();
    painter.setPen(m_color);
    for (int i = 0; i < m_layout->lineCount(); ++i) {
        const qreal baseline = i * m_face.lineHeight() + m_face.baseline();
        drawOutlines(painter, m_layout->lineAt(i), {0, std::round(baseline * scale) / scale});
    }
}

qreal TextLabel::bleed() const
{
    // A font that stands in for a missing one may reach out of the line box.
    return m_face.lineHeight() / 2;
}

void TextLabel::layOut()
{
    if (!isComponentComplete())
        return;
    std::vector<MarkdownSpan> all = spans();
    if (m_lines > 0 && plainText(all).size() > m_lines * fullLine)
        all = cutBehind(std::move(all), m_lines * fullLine);
    m_layout = makeLayout(all, INFINITY);
    setImplicitWidth(std::ceil(contentWidth()));
    m_layout = makeLayout(all, width());
    m_truncated = !fits(*m_layout);
    if (m_truncated)
        cutToLines(all);
    setImplicitHeight(std::max(1, lineCount()) * m_face.lineHeight());
    Q_EMIT laidOut();
    repaint();
}

void TextLabel::cutToLines(const std::vector<MarkdownSpan> &spans)
{
    // The most that fits, found by halving.
    qsizetype fitting = 0;
    qsizetype tooMany = plainText(spans).size();
    while (fitting + 1 < tooMany) {
        const qsizetype middle = (fitting + tooMany) / 2;
        (fits(*makeLayout(cutBehind(spans, middle), width())) ? fitting : tooMany) = middle;
    }
    m_layout = makeLayout(cutBehind(spans, fitting), width());
}

std::unique_ptr<QTextLayout> TextLabel::makeLayout(const std::vector<MarkdownSpan> &spans, qreal width) const
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
    // The panel's direction decides on the side, not the script of what is shown.
    QTextOption option(m_centered ? Qt::AlignHCenter
                                  : Qt::AlignAbsolute | (m_mirrored ? Qt::AlignRight : Qt::AlignLeft));
    // An English sentence stays one in a mirrored window.
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->beginLayout();
    // One line too many tells that it does not fit; those behind it are not looked at.
    for (QTextLine line = layout->createLine(); line.isValid();
         line = fits(*layout) ? layout->createLine() : QTextLine())
        line.setLineWidth(std::min(width, 1e6));
    layout->endLayout();
    return layout;
}

QTextCharFormat TextLabel::format(MarkdownSpan::Look look) const
{
    QFont font = m_face.font();
    if (look == MarkdownSpan::Look::strong)
        font.setBold(true);
    if (look == MarkdownSpan::Look::code)
        font.setFamilies({m_codeFamily, QStringLiteral("monospace")});
    QTextCharFormat format;
    format.setFont(font);
    return format;
}

} // namespace tolvenary
