#include "tests/ui/print_qt.h"
#include "ui/inline_markdown.h"
#include "ui/typography.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

using Look = MarkdownSpan::Look;
using Spans = std::vector<MarkdownSpan>;

} // namespace

TEST(InlineMarkdown, strongAndCodeLoseTheirMarks)
{
    EXPECT_EQ(parseInlineMarkdown("Install via `brew install blackhole-2ch`. **Now**"),
              (Spans{{Look::plain, "Install via "},
                     {Look::code, "brew install blackhole-2ch"},
                     {Look::plain, ". "},
                     {Look::strong, "Now"}}));
}

TEST(InlineMarkdown, aTextWithoutMarksIsOneSpan)
{
    EXPECT_EQ(parseInlineMarkdown("— pick an app —"), (Spans{{Look::plain, "— pick an app —"}}));
    EXPECT_TRUE(parseInlineMarkdown("").empty());
}

TEST(InlineMarkdown, theArgumentTakesTheLookOfItsPlace)
{
    EXPECT_EQ(parseInlineMarkdown("set Input to **%1**.", "BlackHole 2ch"),
              (Spans{{Look::plain, "set Input to "}, {Look::strong, "BlackHole 2ch"}, {Look::plain, "."}}));
}

TEST(InlineMarkdown, marksInTheArgumentAreShownAsTheyStand)
{
    const Spans spans = parseInlineMarkdown("to **%1**", "**x** `y` <b>z</b> %1");
    EXPECT_EQ(spans, (Spans{{Look::plain, "to "}, {Look::strong, "**x** `y` <b>z</b> %1"}}));
    EXPECT_EQ(plainText(spans), "to **x** `y` <b>z</b> %1");
}

TEST(InlineMarkdown, aMarkWithoutItsPartnerIsText)
{
    EXPECT_EQ(parseInlineMarkdown("2 ** 3 `"), (Spans{{Look::plain, "2 ** 3 `"}}));
}

TEST(CutBehind, keepsTheBeginningAndPutsAnEllipsisBehind)
{
    const Spans spans{{Look::plain, "one "}, {Look::strong, "two"}, {Look::plain, " three"}};
    EXPECT_EQ(cutBehind(spans, 5),
              (Spans{{Look::plain, "one "}, {Look::strong, "t"}, {Look::plain, ""}, {Look::plain, "…"}}));
    EXPECT_EQ(plainText(cutBehind(spans, 0)), "…");
    EXPECT_EQ(plainText(cutBehind(spans, 100)), "one two three…");
}

TEST(CutBehind, neverCutsALetterInTwo)
{
    struct Letter {
        const char *what;
        QString text;
    };
    for (const auto &[what, letter] : {Letter{"two units", "\U0001F3B5"}, Letter{"an accent behind", "e\u0301"},
                                       Letter{"a colour behind", "\U0001F44D\U0001F3FD"},
                                       Letter{"a family", "\U0001F468\u200D\U0001F469\u200D\U0001F467"}}) {
        const QString text = "a" + letter + letter + "b";
        for (qsizetype length = 1; length < 1 + letter.size(); ++length)
            EXPECT_EQ(plainText(cutBehind({{Look::plain, text}}, length)), "a…") << what << ", " << length;
        EXPECT_EQ(plainText(cutBehind({{Look::plain, text}}, 1 + letter.size())), "a" + letter + "…") << what;
        EXPECT_EQ(plainText(cutBehind({{Look::plain, text}}, 1 + 2 * letter.size())), "a" + letter + letter + "…")
            << what;
    }
}

TEST(CutBehind, behindALetterThatIsLeftOutNothingFollows)
{
    const Spans spans{{Look::plain, "a\U0001F3B5"}, {Look::strong, "bc"}};
    EXPECT_EQ(plainText(cutBehind(spans, 2)), "a…");
}

} // namespace tolvenary::test
