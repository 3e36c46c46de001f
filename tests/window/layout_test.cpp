#include "tests/core/event_loop.h"
#include "tests/ui/support/stage_window.h"
#include "tests/window/layout_check.h"
#include "ui/typography.h"

#include <QDir>
#include <QFontInfo>
#include <QGuiApplication>
#include <QQuickWindow>
#include <gtest/gtest.h>

#include <tuple>

namespace tolvenary::test
{

namespace
{

/// What a user may ask of every program.
struct Wish {
    std::string name;
    double textScale = 1;
    Qt::LayoutDirection direction = Qt::LeftToRight;
};

void PrintTo(const Wish &wish, std::ostream *out)
{
    *out << wish.name;
}

std::vector<Wish> wishes()
{
    return {{"plain"},
            {"largeText", 1.5},
            {"largestText", 2},
            {"rightToLeft", 1, Qt::RightToLeft},
            {"largestTextRightToLeft", 2, Qt::RightToLeft}};
}

void saveForPeople(const QImage &picture, const ReferenceState &state, const Wish &wish)
{
    const QString surroundings = qEnvironmentVariableIsSet("FONTCONFIG_FILE")
                                     ? QStringLiteral("other-fonts")
                                     : qEnvironmentVariable("QT_SCALE_FACTOR", "1") + "x";
    QDir().mkpath(TOLVENARY_PICTURES);
    picture.save(QStringLiteral(TOLVENARY_PICTURES "/layout-%1-%2-%3.png")
                     .arg(state.name, QString::fromStdString(wish.name), surroundings),
                 nullptr, 90);
}

/// A state of the panel under a wish, in a window as large as the panel then asks for, or as the state's picture if
/// that is larger. The wish holds as long as the window lives.
class WishedWindow
{
  public:
    WishedWindow(const ReferenceState &state, const Wish &wish)
    {
        QFont font;
        font.setPointSizeF(11 * wish.textScale);
        QGuiApplication::setFont(font);
        QGuiApplication::setLayoutDirection(wish.direction);
        enter(state, m_stage);
        m_shown = std::make_unique<StageWindow>(m_stage, state.size);
        m_shown->takeNaturalSize(state.size);
        if (state.name == "picker-open")
            m_shown->openApplicationPicker();
        saveForPeople(m_shown->picture(), state, wish);
    }
    ~WishedWindow()
    {
        m_shown.reset();
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QGuiApplication::setFont(m_font);
    }
    WishedWindow(const WishedWindow &) = delete;
    WishedWindow &operator=(const WishedWindow &) = delete;

    const QQuickWindow &window() const { return m_shown->window(); }

  private:
    QFont m_font = QGuiApplication::font();
    PanelStage m_stage;
    std::unique_ptr<StageWindow> m_shown;
};

class Layout : public testing::TestWithParam<std::tuple<ReferenceState, Wish>>
{
};

class MirroredLayout : public testing::TestWithParam<ReferenceState>
{
};

} // namespace

TEST_P(Layout, nothingIsCutOrLiesOverAnother)
{
    const WishedWindow shown(std::get<0>(GetParam()), std::get<1>(GetParam()));
    const QStringList faults = layoutFaults(shown.window());
    EXPECT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(States, Layout,
                         testing::Combine(testing::ValuesIn(referenceStates()), testing::ValuesIn(wishes())),
                         [](const auto &info) {
                             return testName(std::get<0>(info.param)) + "_" + std::get<1>(info.param).name;
                         });

TEST_P(MirroredLayout, fromRightToLeftEverythingStandsOnTheOtherSide)
{
    const auto layout = layoutOf(WishedWindow(GetParam(), {"plain"}).window());
    const WishedWindow mirrored(GetParam(), {"rightToLeft", 1, Qt::RightToLeft});
    const auto mirroredLayout = layoutOf(mirrored.window());
    ASSERT_EQ(layout.size(), mirroredLayout.size());
    const double width = mirrored.window().width();
    for (const auto &[name, box] : layout) {
        // The window's own buttons stay, as do those of other windows; digits are read from left to right everywhere.
        if (name == "close" || name == "minimise" || name == "zoom" || name.contains("readOut"))
            continue;
        ASSERT_TRUE(mirroredLayout.contains(name)) << name.toStdString();
        const QRectF mirroredBox = mirroredLayout.at(name);
        EXPECT_NEAR(mirroredBox.left(), width - box.right(), 1) << name.toStdString();
        EXPECT_NEAR(mirroredBox.right(), width - box.left(), 1) << name.toStdString();
        EXPECT_NEAR(mirroredBox.top(), box.top(), 1) << name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(States, MirroredLayout, testing::ValuesIn(referenceStates()),
                         [](const auto &info) { return testName(info.param); });

TEST(TextSize, thatGrowsWhileTheWindowIsOpenMakesItHigher)
{
    const QFont before = QGuiApplication::font();
    PanelStage stage;
    const ReferenceState state = referenceStates().front();
    enter(state, stage);
    StageWindow shown(stage, state.size);
    QFont large = before;
    large.setPointSizeF(11 * 1.3);
    QGuiApplication::setFont(large);
    QStringList faults;
    const auto hasRoom = [&] {
        faults = layoutFaults(shown.window());
        return shown.window().height() > state.size.height() && faults.isEmpty();
    };
    EXPECT_TRUE(waitUntil(hasRoom)) << shown.window().height() << '\n' << faults.join('\n').toStdString();
    QGuiApplication::setFont(before);
}

TEST(Letters, areOfTheFontsThatTheSurroundingsHave)
{
    const bool hasOurs = !qEnvironmentVariableIsSet("FONTCONFIG_FILE");
    const Typography typography;
    EXPECT_EQ(QFontInfo(typography.body().font()).family() == "Inter", hasOurs);
    EXPECT_EQ(QFontInfo(typography.title().font()).family() == "Quicksand", hasOurs);
}

} // namespace tolvenary::test
