#include "ui/typography.h"

#include <QVariant>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

struct WrittenStyle {
    const char *name;
    const char *family;
    int size;
    QFont::Weight weight;
    double tracking;
    double lineHeight;
    double baseline;
};

void PrintTo(const WrittenStyle &style, std::ostream *out)
{
    *out << style.name;
}

class TextStyles : public testing::TestWithParam<WrittenStyle>
{
};

} // namespace

TEST_P(TextStyles, areTheWrittenOnes)
{
    const WrittenStyle &written = GetParam();
    const auto style = Typography().property(written.name).value<TextStyle>();
    const QFont font = style.font();
    EXPECT_EQ(font.families().value(0).toStdString(), written.family);
    EXPECT_TRUE(font.families().contains("Inter")) << "what the rounded family lacks is taken from the standard one";
    EXPECT_EQ(font.pixelSize(), written.size);
    EXPECT_EQ(font.weight(), written.weight);
    EXPECT_NEAR(font.letterSpacing(), written.tracking, 1.0 / 64) << "fonts count in 64ths";
    EXPECT_EQ(font.letterSpacingType() == QFont::AbsoluteSpacing, written.tracking != 0);
    EXPECT_EQ(style.lineHeight(), written.lineHeight);
    EXPECT_EQ(style.baseline(), written.baseline);
}

INSTANTIATE_TEST_SUITE_P(Panel, TextStyles,
                         testing::Values(WrittenStyle{"title", "Quicksand", 30, QFont::Bold, 0, 36, 29},
                                         WrittenStyle{"heading", "Quicksand", 11, QFont::Bold, 1.2, 14, 11},
                                         WrittenStyle{"body", "Inter", 13, QFont::Normal, 0, 16, 12},
                                         WrittenStyle{"callout", "Inter", 12, QFont::Normal, 0, 15, 11.5},
                                         WrittenStyle{"caption", "Inter", 10, QFont::Normal, 0, 13, 10},
                                         WrittenStyle{"label", "Inter", 12, QFont::Medium, 0, 15, 11.5},
                                         WrittenStyle{"readOut", "Quicksand", 12, QFont::Bold, 0, 15, 12},
                                         WrittenStyle{"mainButton", "Inter", 13, QFont::DemiBold, 0, 16, 12}),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace tolvenary::test
