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

} // namespace tolvenary::test
