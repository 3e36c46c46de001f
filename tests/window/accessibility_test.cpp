#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"
#include "tests/window/accessible_panel.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

const QString press = QStringLiteral("Press");

class Accessibility : public testing::Test
{
  protected:
    void show(const QString &name)
    {
        for (const ReferenceState &state : referenceStates()) {
            if (state.name != name)
                continue;
            enter(state, stage);
            shown = std::make_unique<StageWindow>(stage, state.size);
            panel = std::make_unique<AccessiblePanel>(*shown);
            if (name == "picker-open")
                shown->openApplicationPicker();
        }
        ASSERT_TRUE(panel);
    }

    QAccessibleInterface &at(QAccessible::Role role, const QString &name)
    {
        QAccessibleInterface *element = panel->find(role, name);
        if (!element)
            throw std::runtime_error("no such element: " + name.toStdString());
        return *element;
    }

    double value(const QString &slider)
    {
        return at(QAccessible::Slider, slider).valueInterface()->currentValue().toDouble();
    }

    PanelStage stage;
    std::unique_ptr<StageWindow> shown;
    std::unique_ptr<AccessiblePanel> panel;
};

class AccessibilityInEveryState : public Accessibility, public testing::WithParamInterface<ReferenceState>
{
};

} // namespace

TEST_P(AccessibilityInEveryState, whatShowsHasAName)
{
    show(GetParam().name);
    const auto elements = panel->elements();
    EXPECT_GT(elements.size(), 15U);
    for (const QAccessibleInterface *element : elements)
        EXPECT_FALSE(element->text(QAccessible::Name).isEmpty())
            << "role " << element->role() << ", " << element->object()->metaObject()->className();
}

INSTANTIATE_TEST_SUITE_P(States, AccessibilityInEveryState, testing::ValuesIn(referenceStates()),
                         [](const auto &info) { return testName(info.param); });

TEST_F(Accessibility, buttonsGoByTheirTextsOrByWhatTheyDo)
{
    show("ready");
    EXPECT_EQ(panel->names(QAccessible::Button),
              (QStringList{"Refresh apps", "Refresh devices", "Start", "Close", "Minimise", "Zoom"}));
    for (const QString &name : panel->names(QAccessible::Button))
        EXPECT_TRUE(at(QAccessible::Button, name).actionInterface()->actionNames().contains(press))
            << name.toStdString();
}

TEST_F(Accessibility, pickersTellTheirChoice)
{
    show("ready");
    EXPECT_EQ(panel->names(QAccessible::ComboBox), (QStringList{"App", "Device"}));
    EXPECT_EQ(at(QAccessible::ComboBox, "App").text(QAccessible::Description), "Firefox");
    EXPECT_EQ(at(QAccessible::ComboBox, "Device").text(QAccessible::Description), "BlackHole 2ch");
    stage.pick("mpv");
    EXPECT_EQ(at(QAccessible::ComboBox, "App").text(QAccessible::Description), "mpv");
}

TEST_F(Accessibility, slidersTellTheirValueAndRange)
{
    show("ready");
    EXPECT_EQ(panel->names(QAccessible::Slider), (QStringList{"App gain", "Mic gain"}));
    for (const QString &name : panel->names(QAccessible::Slider)) {
        QAccessibleValueInterface *value = at(QAccessible::Slider, name).valueInterface();
        EXPECT_EQ(value->currentValue().toDouble(), 1) << name.toStdString();
        EXPECT_EQ(value->minimumValue().toDouble(), 0) << name.toStdString();
        EXPECT_EQ(value->maximumValue().toDouble(), 2) << name.toStdString();
    }
    stage.coordinator().setMicGain(0.25F);
    EXPECT_EQ(value("Mic gain"), 0.25);
}

TEST_F(Accessibility, slidersAreMovedByActionsAndBySettingTheirValue)
{
    show("ready");
    QAccessibleInterface &slider = at(QAccessible::Slider, "App gain");
    ASSERT_TRUE(AccessiblePanel::act(slider, "Increase"));
    EXPECT_FLOAT_EQ(stage.coordinator().appGain(), 1.05F);
    ASSERT_TRUE(AccessiblePanel::act(slider, "Decrease"));
    EXPECT_FLOAT_EQ(stage.coordinator().appGain(), 1);
    slider.valueInterface()->setCurrentValue(0.5);
    EXPECT_FLOAT_EQ(stage.coordinator().appGain(), 0.5F);
    EXPECT_FLOAT_EQ(stage.coordinator().micGain(), 1);
}

TEST_F(Accessibility, aPressOnStartStartsAndTheButtonIsThenCalledStop)
{
    show("ready");
    ASSERT_TRUE(AccessiblePanel::act(at(QAccessible::Button, "Start"), press));
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
    EXPECT_EQ(panel->find(QAccessible::Button, "Start"), nullptr);
    ASSERT_TRUE(AccessiblePanel::act(at(QAccessible::Button, "Stop"), press));
    EXPECT_TRUE(waitUntil([&] { return !stage.coordinator().isRunning(); }));
}

TEST_F(Accessibility, withoutADeviceStartIsUnavailable)
{
    show("no-device");
    QAccessibleInterface &start = at(QAccessible::Button, "Start");
    EXPECT_EQ(start.text(QAccessible::Description), "Unavailable");
    AccessiblePanel::act(start, press);
    EXPECT_EQ(stage.coordinator().status(), "Idle");
    stage.plugIn({"BlackHole 2ch"});
    EXPECT_EQ(start.text(QAccessible::Description), "");
}

TEST_F(Accessibility, withoutADeviceReScanLooksForOne)
{
    show("no-device");
    EXPECT_NE(panel->find(QAccessible::StaticText, "BlackHole not detected. Install via brew install blackhole-2ch."),
              nullptr);
    FakeDevice device;
    device.id = 5;
    device.name = "BlackHole 2ch";
    stage.platform().objects().devices.push_back(device);
    ASSERT_TRUE(AccessiblePanel::act(at(QAccessible::Button, "Re-scan"), press));
    EXPECT_EQ(panel->find(QAccessible::Button, "Re-scan"), nullptr);
    EXPECT_NE(panel->find(QAccessible::StaticText, "In Discord, set Input to BlackHole 2ch."), nullptr);
}

TEST_F(Accessibility, anOpenPickerIsAListWhoseRowsArePicked)
{
    show("ready");
    ASSERT_TRUE(AccessiblePanel::act(at(QAccessible::ComboBox, "App"), press));
    ASSERT_TRUE(waitUntil([&] { return panel->names(QAccessible::ListItem).size() == 9; }));
    EXPECT_NE(panel->find(QAccessible::List, "App"), nullptr);
    EXPECT_EQ(panel->names(QAccessible::ListItem),
              (QStringList{"— pick an app —", "Discord", "Firefox", "mpv", "OBS Studio", "Spotify", "Steam",
                           "Thunderbird", "VLC media player"}));
    EXPECT_TRUE(at(QAccessible::ListItem, "Firefox").state().selected);
    EXPECT_FALSE(at(QAccessible::ListItem, "mpv").state().selected);
    ASSERT_TRUE(AccessiblePanel::act(at(QAccessible::ListItem, "mpv"), press));
    EXPECT_EQ(at(QAccessible::ComboBox, "App").text(QAccessible::Description), "mpv");
    EXPECT_TRUE(waitUntil([&] { return panel->names(QAccessible::ListItem).isEmpty(); }));
}

TEST_F(Accessibility, anotherKindOfStatusIsAnnouncedOnce)
{
    show("ready");
    Announcements announcements;
    stage.coordinator().setStatus("Pick an app first.");
    EXPECT_EQ(announcements.taken(), QStringList{"Pick an app first."});
    stage.coordinator().setStatus("Pick an app first.");
    EXPECT_EQ(announcements.taken(), QStringList{});
}

TEST_F(Accessibility, theStatusThatTheWindowOpensWithIsAnnouncedOnce)
{
    Announcements announcements;
    show("ready");
    EXPECT_EQ(announcements.taken(), QStringList{"Idle"});
}

TEST_F(Accessibility, countsAreThereToBeReadButNotAnnounced)
{
    show("ready");
    Announcements announcements;
    stage.coordinator().setStatus("Running → BlackHole 2ch  mic:24064 app:24000 frames");
    EXPECT_EQ(announcements.taken().size(), 1);
    stage.coordinator().setStatus("Running → BlackHole 2ch  mic:48128 app:48000 frames");
    EXPECT_EQ(announcements.taken(), QStringList{});
    EXPECT_EQ(panel->names(QAccessible::Notification),
              QStringList{"Running → BlackHole 2ch  mic:48128 app:48000 frames"});
}

TEST_F(Accessibility, ofSeveralInARowTheLastIsAnnounced)
{
    show("ready");
    Announcements announcements;
    stage.coordinator().setStatus("Running. In Discord, set Input to BlackHole 2ch.");
    stage.coordinator().setStatus("Stopped");
    EXPECT_EQ(announcements.taken(), QStringList{"Stopped"});
}

TEST_F(Accessibility, silenceIsNotAnnounced)
{
    show("ready");
    Announcements announcements;
    stage.coordinator().setStatus("");
    EXPECT_EQ(announcements.taken(), QStringList{});
}

} // namespace tolvenary::test
