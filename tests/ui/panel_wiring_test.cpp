#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"
#include "tests/ui/support/stage_window.h"
#include "ui/picker_model.h"

#include <QQuickWindow>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

/// What each control of the real panel does to the coordinator.
class PanelWiring : public testing::Test
{
  protected:
    QQuickItem &at(const QString &name)
    {
        QQuickItem *item = shown.item(name);
        if (!item)
            throw std::runtime_error("no " + name.toStdString());
        return *item;
    }

    QPoint middleOf(const QString &name)
    {
        const QQuickItem &item = at(name);
        return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    }

    void click(const QString &name) { QTest::mouseClick(&shown.window(), Qt::LeftButton, {}, middleOf(name)); }

    /// Chooses that row of a picker's list.
    void choose(const QString &picker, int row)
    {
        const auto *rows = at(picker).property("rows").value<PickerModel *>();
        ASSERT_NE(rows, nullptr);
        ASSERT_TRUE(QMetaObject::invokeMethod(&at(picker), "picked", Q_ARG(QVariant, rows->tag(row))));
    }

    /// There without anybody having looked for it yet.
    void plugInUnseen(AudioObjectID id)
    {
        FakeDevice device;
        device.id = id;
        device.name = "BlackHole " + std::to_string(id);
        stage.platform().objects().devices.push_back(device);
    }

    PanelStage stage;
    StageWindow shown{stage, {520, 541}};
};

} // namespace

TEST_F(PanelWiring, theRefreshButtonOfTheApplicationsListsThemAnewAndLooksForNoDevice)
{
    stage.platform().shareableContent().applications.set(std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}});
    plugInUnseen(5);
    click("refreshApps");
    EXPECT_TRUE(waitUntil([&] { return stage.coordinator().availableApps().size() == 1; }));
    EXPECT_TRUE(stage.coordinator().blackHoleDevices().empty());
}

TEST_F(PanelWiring, reScanLooksForDevicesAtOnceAndListsNoApplications)
{
    stage.platform().shareableContent().applications.set(std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}});
    plugInUnseen(5);
    click("rescan");
    EXPECT_EQ(stage.coordinator().blackHoleDevices().size(), 1U);
    processEvents();
    EXPECT_TRUE(stage.coordinator().availableApps().empty());
}

TEST_F(PanelWiring, theRefreshButtonOfTheDevicesDoesTheSame)
{
    stage.plugIn({"BlackHole 2ch"});
    stage.platform().shareableContent().applications.set(std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}});
    plugInUnseen(5);
    click("refreshDevices");
    EXPECT_EQ(stage.coordinator().blackHoleDevices().size(), 2U);
    processEvents();
    EXPECT_TRUE(stage.coordinator().availableApps().empty());
}

TEST_F(PanelWiring, thePickersWriteTheSelectionsAndNothingElse)
{
    stage.runApplications(QStringList{"Discord", "Firefox"});
    stage.plugIn({"BlackHole 2ch", "BlackHole 16ch"});
    choose("appPicker", 2);
    EXPECT_EQ(stage.coordinator().selectedAppID(), 2);
    EXPECT_EQ(stage.coordinator().selectedBlackHole(), stage.coordinator().blackHoleDevices().at(0));
    choose("devicePicker", 1);
    EXPECT_EQ(stage.coordinator().selectedBlackHole(), stage.coordinator().blackHoleDevices().at(1));
    EXPECT_EQ(stage.coordinator().selectedAppID(), 2);
    choose("appPicker", 0);
    EXPECT_EQ(stage.coordinator().selectedAppID(), std::nullopt);
    EXPECT_EQ(stage.coordinator().status(), "Idle");
}

TEST_F(PanelWiring, thePickersFollowTheSelections)
{
    stage.runApplications(QStringList{"Discord", "Firefox"});
    stage.plugIn({"BlackHole 2ch", "BlackHole 16ch"});
    stage.coordinator().setSelectedAppID(1);
    stage.coordinator().setSelectedBlackHole(stage.coordinator().blackHoleDevices().at(1));
    EXPECT_EQ(shown.item("text", &at("appPicker"))->property("text").toString(), "Discord");
    EXPECT_EQ(shown.item("text", &at("devicePicker"))->property("text").toString(), "BlackHole 16ch");
    EXPECT_EQ(at("hint").property("text").toString(), "In Discord, set Input to BlackHole 16ch.");
    stage.coordinator().setSelectedBlackHole(std::nullopt);
    EXPECT_EQ(shown.item("text", &at("devicePicker"))->property("text").toString(), "");
    EXPECT_EQ(at("hint").property("text").toString(), "In Discord, set Input to BlackHole.");
}

TEST_F(PanelWiring, aDeviceThatWasRenamedCanBeChosenAnewUnderItsName)
{
    stage.plugIn({"BlackHole 2ch"});
    stage.plugIn({"BlackHole renamed"});
    EXPECT_EQ(at("hint").property("text").toString(), "In Discord, set Input to BlackHole 2ch.");
    EXPECT_EQ(shown.item("text", &at("devicePicker"))->property("text").toString(), "");
    QTest::mouseClick(&shown.window(), Qt::LeftButton, {}, middleOf("devicePicker"));
    ASSERT_TRUE(waitUntil([&] { return at("devicePicker").property("opened").toBool(); }));
    QTest::keyClick(&shown.window(), Qt::Key_Home);
    QTest::keyClick(&shown.window(), Qt::Key_Return);
    EXPECT_EQ(at("hint").property("text").toString(), "In Discord, set Input to BlackHole renamed.");
    EXPECT_EQ(shown.item("text", &at("devicePicker"))->property("text").toString(), "BlackHole renamed");
}

TEST_F(PanelWiring, eachSliderWritesItsOwnGain)
{
    QObject &app = *shown.item("slider", &at("appGain"));
    QObject &microphone = *shown.item("slider", &at("micGain"));
    for (QObject *slider : {&app, &microphone}) {
        EXPECT_EQ(slider->property("from").toDouble(), 0);
        EXPECT_EQ(slider->property("to").toDouble(), 2);
        EXPECT_EQ(slider->property("stepSize").toDouble(), 0);
    }
    app.setProperty("value", 0.123);
    EXPECT_FLOAT_EQ(stage.coordinator().appGain(), 0.123F);
    EXPECT_EQ(stage.coordinator().micGain(), 1);
    microphone.setProperty("value", 1.877);
    EXPECT_FLOAT_EQ(stage.coordinator().micGain(), 1.877F);
    EXPECT_FLOAT_EQ(stage.coordinator().appGain(), 0.123F);
}

TEST_F(PanelWiring, theMainButtonStartsAndStopsAndIsDisabledWithoutADevice)
{
    EXPECT_FALSE(at("startButton").isEnabled());
    stage.runApplications(QStringList{"Firefox"});
    stage.plugIn({"BlackHole 2ch"});
    stage.pick("Firefox");
    ASSERT_TRUE(at("startButton").isEnabled());
    click("startButton");
    ASSERT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
    click("startButton");
    ASSERT_TRUE(waitUntil([&] { return !stage.coordinator().isRunning(); }));
    EXPECT_EQ(stage.coordinator().status(), "Stopped");
    EXPECT_EQ(at("message").property("text").toString(), "Stopped");
}

TEST_F(PanelWiring, returnIsAPressOfTheMainButtonWhateverHasTheKeyboard)
{
    stage.runApplications(QStringList{"Firefox"});
    stage.plugIn({"BlackHole 2ch"});
    stage.pick("Firefox");
    shown.window().requestActivate();
    ASSERT_TRUE(waitUntil([&] { return shown.window().isActive(); }));
    for (const char *name : {"appPicker", "refreshApps", "devicePicker", "refreshDevices", "startButton"}) {
        SCOPED_TRACE(name);
        at(name).forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&shown.window(), Qt::Key_Return);
        processEvents();
        EXPECT_TRUE(waitUntil([&] { return stage.coordinator().isRunning(); }));
        QTest::keyClick(&shown.window(), Qt::Key_Enter);
        processEvents();
        EXPECT_TRUE(waitUntil([&] { return !stage.coordinator().isRunning(); }));
    }
    EXPECT_EQ(stage.coordinator().status(), "Stopped");
}

} // namespace tolvenary::test
