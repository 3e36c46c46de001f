#include "tests/ui/oscillator.h"
#include "tests/ui/support/stage_window.h"
#include "ui/motion.h"
#include "ui/spring.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

struct PressedCase {
    const char *button;
    Oscillator oscillator;
};

void PrintTo(const PressedCase &pressed, std::ostream *out)
{
    *out << pressed.button;
}

/// A button of the real panel, for a user who likes things to move.
class PressedButton : public testing::TestWithParam<PressedCase>
{
  protected:
    PressedButton()
    {
        stage.plugIn({"BlackHole 2ch"});
        shown.motion().setReduced(false);
    }

    PanelStage stage;
    StageWindow shown{stage, {520, 541}};
};

} // namespace

TEST_P(PressedButton, swingsAboutItsMiddleByItsOwnFigures)
{
    QQuickItem *button = shown.item(GetParam().button);
    ASSERT_NE(button, nullptr);
    auto *spring = button->findChild<Spring *>();
    ASSERT_NE(spring, nullptr);
    EXPECT_EQ(button->transformOrigin(), QQuickItem::Center);
    EXPECT_EQ(button->scale(), 1);
    for (const bool down : {true, false}) {
        const double from = button->scale();
        const double target = down ? 0.96 : 1;
        button->setProperty("down", down);
        for (const int milliseconds : {10, 40, 80, 120, 160}) {
            spring->setCurrentTime(milliseconds);
            EXPECT_NEAR(button->scale(), target + stepped(GetParam().oscillator, from - target, 0, milliseconds / 1e3),
                        1e-5)
                << (down ? "pressed, " : "let go, ") << milliseconds;
        }
        spring->setCurrentTime(2000);
        EXPECT_EQ(button->scale(), target);
    }
}

INSTANTIATE_TEST_SUITE_P(OfThePanel, PressedButton,
                         testing::Values(PressedCase{"startButton", {0.25, 0.7}},
                                         PressedCase{"refreshApps", {0.2, 0.7}},
                                         PressedCase{"refreshDevices", {0.2, 0.7}}, PressedCase{"rescan", {0.2, 0.7}}),
                         [](const auto &info) { return std::string(info.param.button); });

} // namespace tolvenary::test
