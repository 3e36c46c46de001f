#include "ui/glyph_outlines.h"

#include <QGlyphRun>
#include <QPainterPath>
#include <QRawFont>

namespace tolvenary
{

namespace
{

// No font engine thickens stems of this size, in pixels.
constexpr qreal untouchedSize = 1000;

bool isMadeOfPictures(const QRawFont &font)
{
    return !font.fontTable("CBDT").isEmpty() || !font.fontTable("COLR").isEmpty() || !font.fontTable("sbix").isEmpty();
}

QPainterPath outlineOf(const QGlyphRun &run)
{
    QRawFont font = run.rawFont();
    const qreal scale = font.pixelSize() / untouchedSize;
    font.setPixelSize(untouchedSize);
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> places = run.positions();
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
        const QTransform placed = QTransform::fromTranslate(places[i].x(), places[i].y()).scale(scale, scale);
        outline.addPath(placed.map(font.pathForGlyph(glyphs[i])));
    }
    return outline;
}

} // namespace

void drawOutlines(QPainter &painter, const QTextLine &line, const QPointF &baseline)
{
    // A run's places are given in its layout, where the line's own baseline is this.
    const QPointF shift = baseline - QPointF(0, line.y() + line.ascent());
    for (const QGlyphRun &run : line.glyphRuns()) {
        if (isMadeOfPictures(run.rawFont()))
            painter.drawGlyphRun(shift, run);
        else
            painter.fillPath(outlineOf(run).translated(shift), painter.pen().color());
    }
}

} // namespace tolvenary
