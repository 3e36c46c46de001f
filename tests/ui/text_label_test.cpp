#include "ui/markdown_label.h"
#include "ui/plain_label.h"
#include "ui/typography.h"

#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace tolvenary::test
{

namespace
{

template <typename Label> std::unique_ptr<Label> labelOf(const char *property, const QString &text, int lines)
{
    auto label = std::make_unique<Label>();
    const Typography typography;
    label->setProperty("face", QVariant::fromValue(typography.body()));
    label->setProperty("codeFamily", typography.monospacedFamily());
    label->setProperty(property, text);
    label->setProperty("lines", lines);
    return label;
}

std::unique_ptr<MarkdownLabel> marked(const QString &markdown, qreal width, int lines)
{
    auto label = labelOf<MarkdownLabel>("markdown", markdown, lines);
    label->setWidth(width);
    static_cast<QQmlParserStatus *>(label.get())->componentComplete();
    return label;
}

std::unique_ptr<PlainLabel> plain(const QString &text, qreal width, int lines)
{
    auto label = labelOf<PlainLabel>("text", text, lines);
    label->setWidth(width);
    static_cast<QQmlParserStatus *>(label.get())->componentComplete();
    return label;
}

} // namespace

TEST(TextLabel, isAsHighAsTheLinesItNeeds)
{
    const QString text = "BlackHole not detected. Install via `brew install blackhole-2ch`.";
    EXPECT_EQ(marked(text, 2000, 2)->implicitHeight(), 16);
    EXPECT_EQ(marked(text, 334, 2)->implicitHeight(), 32);
}

TEST(TextLabel, isCutAtItsLastLine)
{
    const auto label = plain(QString("word ").repeated(100), 300, 2);
    EXPECT_TRUE(label->isTruncated());
    EXPECT_EQ(label->lineCount(), 2);
    EXPECT_EQ(label->implicitHeight(), 32);
    // Of letters this narrow, the next one would have gone into what is left of the line.
    EXPECT_GT(plain(QString("i").repeated(1000), 300, 1)->contentWidth(), 295);
}

TEST(TextLabel, anEndlessNameIsCutAsAnyOther)
{
    const auto endless = plain(QString("x").repeated(1000000), 300, 1);
    const auto merelyLong = plain(QString("x").repeated(1000), 300, 1);
    EXPECT_TRUE(endless->isTruncated());
    EXPECT_EQ(endless->lineCount(), 1);
    EXPECT_EQ(endless->contentWidth(), merelyLong->contentWidth());
}

TEST(TextLabel, anEndlessNameTakesHardlyLongerThanALongOne)
{
    const auto best = [](const QString &text) {
        qint64 least = std::numeric_limits<qint64>::max();
        for (int i = 0; i < 3; ++i) {
            QElapsedTimer clock;
            clock.start();
            plain(text, 300, 1);
            least = std::min(least, clock.nsecsElapsed());
        }
        return least;
    };
    // Without a limit it would be several hundred times as long.
    EXPECT_LT(best(QString("x").repeated(50000)), 20 * best(QString("x").repeated(2000)));
}

TEST(TextLabel, isWholeWhereItFits)
{
    const auto label = plain(QString("word ").repeated(100), 300, 0);
    EXPECT_FALSE(label->isTruncated());
    EXPECT_GT(label->lineCount(), 2);
    EXPECT_FALSE(plain("Idle", 300, 1)->isTruncated());
}

TEST(TextLabel, anEmptyTextKeepsTheHeightOfALine)
{
    EXPECT_EQ(marked("", 300, 1)->implicitHeight(), 16);
    EXPECT_EQ(plain("", 300, 0)->implicitHeight(), 16);
}

namespace
{

/// A label that shows what it paints.
class PaintedLabel : public MarkdownLabel
{
  public:
    QImage picture() const
    {
        QImage image(400, 20, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        paint(painter);
        return image;
    }
};

QImage pictureFor(Qt::LayoutDirection direction)
{
    QGuiApplication::setLayoutDirection(direction);
    PaintedLabel label;
    label.setProperty("face", QVariant::fromValue(Typography().body()));
    label.setProperty("markdown", "In Discord, set Input to **BlackHole**.");
    label.setWidth(400);
    static_cast<QQmlParserStatus &>(label).componentComplete();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    return label.picture();
}

} // namespace

TEST(TextLabel, readsAnEnglishSentenceFromLeftToRightInEveryWindow)
{
    const QImage usual = pictureFor(Qt::LeftToRight);
    EXPECT_EQ(pictureFor(Qt::RightToLeft), usual);
    QImage empty = usual;
    empty.fill(Qt::black);
    EXPECT_NE(usual, empty);
}

TEST(TextLabel, whatIsCutEndsWithAnEllipsis)
{
    const auto pictureOf = [](const QString &text) {
        PaintedLabel label;
        label.setProperty("face", QVariant::fromValue(Typography().body()));
        label.setProperty("markdown", text);
        label.setWidth(100);
        static_cast<QQmlParserStatus &>(label).componentComplete();
        return label.picture();
    };
    int letters = 0;
    while (!plain(QString("i").repeated(letters + 1) + "…", 100, 1)->isTruncated())
        ++letters;
    ASSERT_GT(letters, 5);
    EXPECT_EQ(pictureOf(QString("i").repeated(200)), pictureOf(QString("i").repeated(letters) + "…"));
}

TEST(TextLabel, strongLettersAreBold)
{
    QFont bold = Typography().body().font();
    bold.setBold(true);
    EXPECT_NEAR(marked("**BlackHole**", 300, 1)->contentWidth(), QFontMetricsF(bold).horizontalAdvance("BlackHole"), 1);
    EXPECT_LT(marked("BlackHole", 300, 1)->contentWidth(), marked("**BlackHole**", 300, 1)->contentWidth() - 1);
}

TEST(TextLabel, codeHasLettersOfOneWidth)
{
    EXPECT_EQ(marked("`iiiiiiii`", 300, 1)->contentWidth(), marked("`wwwwwwww`", 300, 1)->contentWidth());
    EXPECT_LT(marked("iiiiiiii", 300, 1)->contentWidth(), marked("wwwwwwww", 300, 1)->contentWidth());
}

TEST(PlainLabel, takesMarksForText)
{
    const QString text = "**x** <b>y</b> `z`";
    const QFontMetricsF metrics(Typography().body().font());
    EXPECT_NEAR(plain(text, 300, 1)->contentWidth(), metrics.horizontalAdvance(text), 1);
    EXPECT_LT(marked(text, 300, 1)->contentWidth(), metrics.horizontalAdvance(text) - 10);
}

TEST(PlainLabel, aLineFeedBeginsANewLine)
{
    EXPECT_EQ(plain("one\ntwo", 300, 0)->lineCount(), 2);
}

} // namespace tolvenary::test
