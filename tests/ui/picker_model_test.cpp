#include "tests/ui/print_qt.h"
#include "ui/application_rows.h"
#include "ui/device_rows.h"

#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

QVariantMap application(int process, const QString &name, const QString &identifier = "some.identifier")
{
    return {{"processID", process}, {"applicationName", name}, {"bundleIdentifier", identifier}};
}

QVariantMap device(uint id, const QString &name)
{
    return {{"id", id}, {"name", name}, {"uid", "uid"}};
}

QString textAt(const PickerModel &model, int row)
{
    return model.index(row).data(Qt::DisplayRole).toString();
}

class Applications : public testing::Test
{
  protected:
    Applications() { rows.setPlaceholder("— pick an app —"); }

    ApplicationRows rows;
};

} // namespace

TEST_F(Applications, withoutAnyThereIsOnlyThePlaceholder)
{
    rows.setApplications({});
    EXPECT_EQ(rows.texts(), QStringList{"— pick an app —"});
    EXPECT_EQ(rows.selectedRow(), 0);
    EXPECT_EQ(rows.selectedText(), "— pick an app —");
}

TEST_F(Applications, areListedInTheirOrder)
{
    rows.setApplications({application(3, "mpv"), application(1, "Discord")});
    EXPECT_EQ(rows.texts(), (QStringList{"— pick an app —", "mpv", "Discord"}));
}

TEST_F(Applications, anEmptyNameIsReplacedByTheIdentifier)
{
    rows.setApplications({application(3, "", "org.example.player")});
    EXPECT_EQ(textAt(rows, 1), "org.example.player");
}

TEST_F(Applications, theTagIsTheProcessAndThePlaceholderHasNone)
{
    rows.setApplications({application(42, "mpv")});
    EXPECT_FALSE(rows.tag(0).isValid());
    EXPECT_EQ(rows.tag(1).toInt(), 42);
    EXPECT_FALSE(rows.tag(7).isValid());
}

TEST_F(Applications, aProcessThatIsGoneSelectsNoRowAndShowsNoText)
{
    rows.setApplications({application(42, "mpv")});
    rows.setSelection(42);
    EXPECT_EQ(rows.selectedText(), "mpv");
    rows.setApplications({application(7, "Discord")});
    EXPECT_EQ(rows.selectedRow(), -1);
    EXPECT_EQ(rows.selectedText(), "");
}

TEST_F(Applications, rowsThatStayAreNeitherRemovedNorMadeAnew)
{
    rows.setApplications({application(1, "a"), application(2, "b"), application(3, "c")});
    const QPersistentModelIndex b = rows.index(2);
    const QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
    rows.setApplications({application(9, "new"), application(3, "c"), application(2, "b")});
    EXPECT_EQ(rows.texts(), (QStringList{"— pick an app —", "new", "c", "b"}));
    EXPECT_TRUE(b.isValid());
    EXPECT_EQ(b.row(), 3);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(Applications, ofTwoRowsForOneProcessTheOtherGoesWithItsApplication)
{
    rows.setApplications({application(1, "a"), application(1, "also a"), application(2, "b")});
    ASSERT_EQ(rows.texts(), (QStringList{"— pick an app —", "a", "also a", "b"}));
    rows.setApplications({application(1, "a"), application(2, "b")});
    EXPECT_EQ(rows.texts(), (QStringList{"— pick an app —", "a", "b"}));
    EXPECT_EQ(rows.count(), 3);
}

TEST_F(Applications, theSameListAgainMovesNothing)
{
    rows.setApplications({application(1, "a"), application(2, "b")});
    const QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(&rows, &QAbstractItemModel::rowsRemoved);
    const QSignalSpy moved(&rows, &QAbstractItemModel::rowsMoved);
    rows.setApplications({application(1, "a"), application(2, "b")});
    EXPECT_EQ(inserted.count() + removed.count() + moved.count(), 0);
}

TEST_F(Applications, aProcessUnderAnotherNameChangesItsText)
{
    rows.setApplications({application(1, "a")});
    rows.setApplications({application(1, "renamed")});
    EXPECT_EQ(textAt(rows, 1), "renamed");
}

TEST_F(Applications, marksInANameAreShownAsTheyStand)
{
    rows.setApplications({application(1, "**x** <b>y</b>")});
    EXPECT_EQ(textAt(rows, 1), "**x** <b>y</b>");
}

TEST(Devices, areListedInTheirOrderWithoutARowForNone)
{
    DeviceRows rows;
    rows.setDevices({device(60, "BlackHole 2ch"), device(61, "BlackHole 16ch")});
    EXPECT_EQ(rows.texts(), (QStringList{"BlackHole 2ch", "BlackHole 16ch"}));
    EXPECT_EQ(rows.selectedRow(), -1);
    EXPECT_EQ(rows.selectedText(), "");
}

TEST(Devices, twoOfTheSameNameAreToldApartByTheirIds)
{
    DeviceRows rows;
    rows.setDevices({device(60, "BlackHole 2ch"), device(61, "BlackHole 2ch")});
    rows.setSelection(device(61, "BlackHole 2ch"));
    EXPECT_EQ(rows.selectedRow(), 1);
    EXPECT_EQ(rows.tag(1).toMap().value("id").toUInt(), 61U);
}

TEST(Devices, aDeviceUnderAnotherNameIsAnotherChoice)
{
    DeviceRows rows;
    rows.setDevices({device(60, "BlackHole 2ch"), device(61, "BlackHole 16ch")});
    rows.setSelection(device(60, "BlackHole 2ch"));
    ASSERT_EQ(rows.selectedRow(), 0);
    rows.setDevices({device(60, "BlackHole renamed"), device(61, "BlackHole 16ch")});
    EXPECT_EQ(rows.selectedRow(), -1);
    EXPECT_EQ(rows.selectedText(), "");
    rows.setSelection(rows.tag(0));
    EXPECT_EQ(rows.selectedRow(), 0);
    EXPECT_EQ(rows.selectedText(), "BlackHole renamed");
}

TEST(Devices, chosenIsTrueForTheSelectedRowAlone)
{
    DeviceRows rows;
    rows.setDevices({device(60, "a"), device(61, "b")});
    rows.setSelection(device(60, "a"));
    const int chosen = rows.roleNames().key("chosen");
    EXPECT_TRUE(rows.index(0).data(chosen).toBool());
    EXPECT_FALSE(rows.index(1).data(chosen).toBool());
    EXPECT_FALSE(rows.data(rows.index(5), chosen).isValid());
}

} // namespace tolvenary::test
