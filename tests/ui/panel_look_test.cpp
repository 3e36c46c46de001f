#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"
#include "tests/ui/support/stage_window.h"
#include "ui/cosmic_gradient.h"
#include "ui/glass_shape.h"
#include "ui/symbol.h"
#include "ui/text_label.h"
#include "ui/typography.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

// Texts, styles, colours and opacities of everything that the panel shows, as they are written; a picture forgives what
// nobody would see at once.

namespace
{

const QColor cyan(100, 210, 255);
const QColor pink(255, 55, 95);
const QColor purple(191, 90, 242);
const QColor blue(10, 132, 255);
const QColor green(48, 209, 88);
const QColor orange(255, 159, 10);

QColor faded(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor white(double opacity)
{
    return faded(Qt::white, opacity);
}

bool isSame(const QColor &one, const QColor &other)
{
    const auto near = [](float a, float b) { return std::abs(a - b) < 1e-3F; };
    return near(one.alphaF(), other.alphaF()) &&
           (other.alpha() == 0 ||
            (near(one.redF(), other.redF()) && near(one.greenF(), other.greenF()) && near(one.blueF(), other.blueF())));
}

std::string shown(const QColor &color)
{
    return color.name(QColor::HexArgb).toStdString() + " (" + std::to_string(color.alphaF()) + ")";
}

void expectColor(const QObject &object, const char *property, const QColor &expected)
{
    const auto color = object.property(property).value<QColor>();
    EXPECT_TRUE(isSame(color, expected)) << property << ": " << shown(color) << ", not " << shown(expected);
}

void expectColors(const QObject &object, const char *property, const std::vector<QColor> &expected)
{
    const QVariantList colors = object.property(property).toList();
    ASSERT_EQ(static_cast<std::size_t>(colors.size()), expected.size()) << property;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto color = colors[static_cast<qsizetype>(i)].value<QColor>();
        EXPECT_TRUE(isSame(color, expected[i]))
            << property << " " << i << ": " << shown(color) << ", not " << shown(expected[i]);
    }
}

/// The first item of a kind below another one.
template <typename Kind> Kind *firstOf(const QQuickItem &root)
{
    for (QQuickItem *child : root.childItems()) {
        if (auto *found = qobject_cast<Kind *>(child))
            return found;
        if (auto *found = firstOf<Kind>(*child))
            return found;
    }
    return nullptr;
}

struct Shadow {
    QColor color = Qt::transparent;
    double radius = 0;
    double offset = 0;
};

class PanelLook : public testing::Test
{
  protected:
    PanelLook()
    {
        stage.runApplications(QStringList{"Discord", "Firefox"});
        stage.plugIn({"BlackHole 2ch"});
        stage.pick("Firefox");
        stage.coordinator().setStatus("Idle");
        shown = std::make_unique<StageWindow>(stage, QSize(520, 541));
    }

    QQuickItem &at(const QStringList &path)
    {
        QQuickItem *item = nullptr;
        for (const QString &name : path)
            if (item = shown->item(name, item); !item)
                throw std::runtime_error("no " + path.join('/').toStdString());
        return *item;
    }

    void expectText(const QStringList &path, const QString &text, const TextStyle &face, const QColor &color)
    {
        SCOPED_TRACE(path.join('/').toStdString());
        const QQuickItem &label = at(path);
        EXPECT_EQ(label.property("text").toString(), text);
        EXPECT_EQ(label.property("face").value<TextStyle>(), face);
        expectColor(label, "color", color);
    }

    static void expectGlass(const QQuickItem *glass, const std::vector<QColor> &fill,
                            const std::vector<QColor> &outline, double radius, const Shadow &shadow = {})
    {
        ASSERT_NE(qobject_cast<const GlassShape *>(glass), nullptr);
        expectColors(*glass, "fill", fill);
        expectColors(*glass, "outline", outline);
        EXPECT_EQ(glass->property("radius").toDouble(), radius);
        expectColor(*glass, "shadowColor", shadow.color);
        if (shadow.color.alpha() > 0) {
            EXPECT_EQ(glass->property("shadowRadius").toDouble(), shadow.radius);
            EXPECT_EQ(glass->property("shadowOffset").toDouble(), shadow.offset);
        }
    }

    QQuickItem *backgroundOf(const QStringList &path) { return at(path).property("background").value<QQuickItem *>(); }

    void expectSymbol(const QQuickItem &root, const QString &name, const std::vector<QColor> &colors)
    {
        auto *symbol = firstOf<Symbol>(root);
        ASSERT_NE(symbol, nullptr);
        EXPECT_EQ(symbol->name(), name);
        expectColors(*symbol, "colors", colors);
    }

    PanelStage stage;
    std::unique_ptr<StageWindow> shown;
    Typography typography;
};

} // namespace

TEST_F(PanelLook, theHeaderIsATitleAndALineBelowIt)
{
    expectText({"title"}, "Tolvenary", typography.title(), white(1));
    expectText({"subtitle"}, "mic + system audio → BlackHole 2ch", typography.callout(), white(0.6));
}

TEST_F(PanelLook, everyCardIsGlassUnderAHeadingWithItsSymbol)
{
    struct Card {
        QString name;
        QString heading;
        QString symbol;
    };
    for (const auto &[name, heading, symbol] :
         {Card{"sourceCard", "SOURCE APP", "app.dashed"}, Card{"microphoneCard", "MICROPHONE", "mic.fill"},
          Card{"outputCard", "OUTPUT → BLACKHOLE", "dot.radiowaves.left.and.right"}}) {
        SCOPED_TRACE(name.toStdString());
        expectText({name, "headingText"}, heading, typography.heading(), white(0.7));
        expectSymbol(at({name, "heading"}), symbol, {cyan, purple});
        expectGlass(firstOf<GlassShape>(at({name})), {white(0.04)}, {white(0.18), white(0.04)}, 14);
    }
}

TEST_F(PanelLook, theSourceCardNamesItsControlsAndSaysWhatThePickIsGoodFor)
{
    expectText({"appPicker", "text"}, "Firefox", typography.body(), white(0.9));
    expectText({"note"}, "Whole-system audio is captured. Picker is cosmetic — pick whatever you like.",
               typography.caption(), white(0.55));
    expectSymbol(at({"refreshApps"}), "arrow.clockwise", {white(0.9)});
    stage.coordinator().setSelectedAppID(std::nullopt);
    EXPECT_EQ(at({"appPicker", "text"}).property("text").toString(), "— pick an app —");
}

TEST_F(PanelLook, eachGainHasItsLabelAndItsAccent)
{
    struct Gain {
        QString name;
        QString label;
        QColor accent;
    };
    for (const auto &[name, label, accent] : {Gain{"appGain", "App gain", cyan}, Gain{"micGain", "Mic gain", pink}}) {
        SCOPED_TRACE(name.toStdString());
        expectText({name, "label"}, label, typography.label(), white(0.85));
        EXPECT_EQ(at({name, "label"}).width(), 76);
        EXPECT_EQ(at({name, "readOut"}).property("text").toString(), "1.00×");
        const auto *sign = firstOf<TextLabel>(at({name, "readOut"}));
        ASSERT_NE(sign, nullptr);
        EXPECT_EQ(sign->property("face").value<TextStyle>(), typography.readOut());
        expectColor(*sign, "color", accent);
        expectColor(at({name, "track"}), "color", white(0.14));
        expectColor(at({name, "filled"}), "color", accent);
        expectGlass(&at({name, "thumb"}), {QColor(236, 236, 240)}, {}, 9, {faded(Qt::black, 0.45), 1.5, 1});
    }
}

TEST_F(PanelLook, aGainOutsideOfItsRangeIsPrintedAsItIsAndAHalfGoesToTheEvenDigit)
{
    struct Printed {
        float gain;
        QString text;
    };
    for (const auto &[gain, text] : {Printed{2.5F, "2.50×"}, Printed{-1, "-1.00×"}, Printed{0.125F, "0.12×"},
                                     Printed{0.375F, "0.38×"}, Printed{-0.125F, "-0.12×"}, Printed{-0.375F, "-0.38×"},
                                     Printed{0.35F, "0.35×"}, Printed{1.999F, "2.00×"}, Printed{12.345F, "12.35×"}}) {
        stage.coordinator().setMicGain(gain);
        EXPECT_EQ(at({"micGain", "readOut"}).property("text").toString(), text);
    }
}

TEST_F(PanelLook, everyChipIsGlass)
{
    for (const char *name : {"refreshApps", "refreshDevices", "rescan"}) {
        SCOPED_TRACE(name);
        expectGlass(backgroundOf({name}), {white(0.08)}, {white(0.18)}, 8);
        at({name}).setProperty("down", true);
        expectGlass(backgroundOf({name}), {white(0.18)}, {white(0.18)}, 8);
    }
    const auto *words = firstOf<TextLabel>(at({"rescan"}));
    ASSERT_NE(words, nullptr);
    EXPECT_EQ(words->property("text").toString(), "Re-scan");
    EXPECT_EQ(words->property("face").value<TextStyle>(), typography.label());
    expectColor(*words, "color", white(0.9));
}

TEST_F(PanelLook, everyPickerIsGlassWithChevrons)
{
    for (const char *name : {"appPicker", "devicePicker"}) {
        SCOPED_TRACE(name);
        expectGlass(backgroundOf({name}), {white(0.1)}, {white(0.12)}, 6);
        expectGlass(&at({name, "chevrons"}), {white(0.14)}, {}, 4.5);
        expectSymbol(at({name, "chevrons"}), "chevron.up.chevron.down", {white(0.9)});
        const auto *menu = at({name}).property("menu").value<QObject *>();
        ASSERT_NE(menu, nullptr);
        expectGlass(menu->property("background").value<QQuickItem *>(), {QColor(40, 35, 58)}, {white(0.16)}, 8,
                    {faded(Qt::black, 0.45), 10, 6});
    }
}

TEST_F(PanelLook, theChosenRowOfAnOpenListLiesOverTheButton)
{
    shown->openApplicationPicker();
    const auto boxOf = [](const QQuickItem &item) { return item.mapRectToScene(item.boundingRect()); };
    const QRectF button = boxOf(at({"appPicker"}));
    const auto *menu = at({"appPicker"}).property("menu").value<QObject *>();
    const auto *list = menu->property("list").value<QQuickItem *>();
    ASSERT_NE(list, nullptr);
    const QRectF back = boxOf(*menu->property("background").value<QQuickItem *>());
    EXPECT_EQ(back, QRectF(button.left() - 12, button.top() - 5 - 2 * 23, button.width() + 17, 3 * 23 + 10));
    const auto *row = list->property("currentItem").value<QQuickItem *>();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->property("text").toString(), "Firefox");
    EXPECT_EQ(boxOf(*row).top(), button.top());
    EXPECT_EQ(row->height(), 23);
    const auto *words = firstOf<TextLabel>(*row);
    ASSERT_NE(words, nullptr);
    EXPECT_EQ(boxOf(*words).topLeft(), boxOf(at({"appPicker", "text"})).topLeft());
    expectColor(*words, "color", white(1));
    expectSymbol(*row, "checkmark", {white(1)});
}

TEST_F(PanelLook, theOutputCardShowsAGreenDotThatGlowsAndAHint)
{
    EXPECT_TRUE(at({"foundRow"}).isVisible());
    expectGlass(&at({"foundRow", "dot"}), {green}, {}, 4.5, {faded(green, 0.7), 4, 0});
    expectText({"devicePicker", "text"}, "BlackHole 2ch", typography.body(), white(0.9));
    expectSymbol(at({"refreshDevices"}), "arrow.clockwise", {white(0.9)});
    expectText({"hint"}, "In Discord, set Input to BlackHole 2ch.", typography.caption(), white(0.7));
    EXPECT_EQ(at({"hint"}).property("markdown").toString(), QString("In Discord, set Input to **%1**."));
}

TEST_F(PanelLook, theHintTellsALongNameInSeveralLinesAndAnEndlessOneInThree)
{
    const QQuickItem &hint = at({"hint"});
    const auto select = [this](const QString &name) {
        BlackHoleDevice device = stage.coordinator().selectedBlackHole().value();
        device.name = name.toStdString();
        stage.coordinator().setSelectedBlackHole(device);
    };
    EXPECT_EQ(hint.property("lineCount").toInt(), 1);
    const double before = at({"outputCard"}).height();
    select("BlackHole" + QString(" of a long name").repeated(7));
    EXPECT_EQ(hint.property("lineCount").toInt(), 2);
    EXPECT_FALSE(hint.property("truncated").toBool());
    EXPECT_TRUE(waitUntil([&] { return at({"outputCard"}).height() == before + 13; }));
    select("BlackHole" + QString(" of a long name").repeated(1000));
    EXPECT_EQ(hint.property("lineCount").toInt(), 3);
    EXPECT_TRUE(hint.property("truncated").toBool());
    EXPECT_EQ(at({"devicePicker"}).height(), 23);
}

TEST_F(PanelLook, withoutADeviceTheOutputCardShowsAnOrangeDotThatDoesNotGlowAndHowToComeByOne)
{
    stage.plugIn({});
    EXPECT_TRUE(at({"missingRow"}).isVisible());
    expectGlass(&at({"missingRow", "dot"}), {orange}, {}, 4.5);
    expectText({"missingText"}, "BlackHole not detected. Install via brew install blackhole-2ch.", typography.body(),
               white(0.85));
    EXPECT_EQ(at({"missingText"}).property("markdown").toString(),
              "BlackHole not detected. Install via `brew install blackhole-2ch`.");
    EXPECT_EQ(at({"missingText"}).property("codeFamily").toString(), "Noto Sans Mono");
    EXPECT_EQ(at({"missingText"}).property("lines").toInt(), 2);
}

TEST_F(PanelLook, theMainButtonChangesItsColoursWithTheMixAndFadesAsAWhole)
{
    expectText({"startButton", "text"}, "Start", typography.mainButton(), white(1));
    expectSymbol(at({"startButton"}), "play.fill", {white(1)});
    expectGlass(backgroundOf({"startButton"}), {cyan, blue, purple}, {white(0.35)}, 10, {faded(cyan, 0.45), 10, 4});
    EXPECT_EQ(backgroundOf({"startButton"})->opacity(), 1);
    stage.start();
    expectText({"startButton", "text"}, "Stop", typography.mainButton(), white(1));
    expectSymbol(at({"startButton"}), "stop.fill", {white(1)});
    expectGlass(backgroundOf({"startButton"}), {pink, purple, blue}, {white(0.35)}, 10, {faded(pink, 0.45), 10, 4});
    EXPECT_EQ(at({"startButton"}).scale(), 1) << "only a press moves it";
    stage.coordinator().setSelectedBlackHole(std::nullopt);
    EXPECT_EQ(backgroundOf({"startButton"})->opacity(), 0.5);
}

TEST_F(PanelLook, theBubbleIsGlassAroundADotAndTheStatus)
{
    expectGlass(firstOf<GlassShape>(at({"bubble"})), {white(0.05)}, {white(0.1)}, 10);
    expectText({"message"}, "Idle", typography.caption(), white(0.8));
    EXPECT_EQ(at({"message"}).property("lines").toInt(), 2);
    expectGlass(&at({"bubble", "dot"}), {white(0.4)}, {}, 3.5);
    stage.start();
    expectGlass(&at({"bubble", "dot"}), {green}, {}, 3.5, {green, 4, 0});
}

TEST_F(PanelLook, theBackgroundIsADarkGradientWithTwoGlowsUnderFadedStars)
{
    auto *gradient = firstOf<CosmicGradient>(*shown->item("column")->parentItem());
    ASSERT_NE(gradient, nullptr);
    expectColors(*gradient, "base",
                 {QColor::fromRgbF(0.04F, 0.03F, 0.10F), QColor::fromRgbF(0.08F, 0.05F, 0.18F),
                  QColor::fromRgbF(0.05F, 0.02F, 0.12F)});
    expectColor(*gradient, "topGlow", faded(purple, 0.35));
    expectColor(*gradient, "bottomGlow", faded(cyan, 0.18));
    EXPECT_EQ(gradient->property("glowStart").toDouble(), 30);
    EXPECT_EQ(gradient->property("topGlowEnd").toDouble(), 420);
    EXPECT_EQ(gradient->property("bottomGlowEnd").toDouble(), 380);
    EXPECT_EQ(gradient->size(), QSizeF(520, 541));
    EXPECT_EQ(at({"stars"}).opacity(), 0.85);
    EXPECT_EQ(at({"stars"}).size(), QSizeF(520, 541));
}

TEST_F(PanelLook, theWindowsOwnButtonsAreThreeDiscs)
{
    struct Disc {
        const char *name;
        QColor color;
    };
    for (const auto &[name, color] :
         {Disc{"close", {255, 95, 87}}, Disc{"minimise", {254, 188, 46}}, Disc{"zoom", {40, 200, 64}}}) {
        SCOPED_TRACE(name);
        expectGlass(firstOf<GlassShape>(*backgroundOf({name})), {color}, {}, 5.5);
        EXPECT_EQ(backgroundOf({name})->size(), QSizeF(12, 12));
    }
}

} // namespace tolvenary::test
