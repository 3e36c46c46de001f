#include "tests/core/coordinator_fixture.h"

#include <QVariant>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

/// The coordinator as the panel sees it: by names and values.
class PropertiesTest : public CoordinatorTest
{
  protected:
    QVariant property(const char *name) { return coordinator().property(name); }
    void set(const char *name, const QVariant &value) { EXPECT_TRUE(coordinator().setProperty(name, value)) << name; }
};

} // namespace

TEST_F(PropertiesTest, atFirstNothingIsKnownOrPickedAndBothGainsAreOne)
{
    EXPECT_EQ(property("availableApps"), QVariant(QVariantList()));
    EXPECT_FALSE(property("selectedAppID").isValid());
    EXPECT_EQ(property("blackHoleDevices"), QVariant(QVariantList()));
    EXPECT_FALSE(property("selectedBlackHole").isValid());
    EXPECT_EQ(property("micGain"), QVariant(1.0F));
    EXPECT_EQ(property("appGain"), QVariant(1.0F));
    EXPECT_EQ(property("isRunning"), QVariant(false));
    EXPECT_EQ(property("status"), QVariant(QStringLiteral("Idle")));
    EXPECT_EQ(property("micFrames"), QVariant(qulonglong{0}));
    EXPECT_EQ(property("appFrames"), QVariant(qulonglong{0}));
    EXPECT_TRUE(calls().log().empty()) << "no audio work starts";
}

TEST_F(PropertiesTest, anApplicationIsARowOfThreeFields)
{
    setApplications({{"Musik ♪", music, "org.example.music"}});
    refreshApps();
    const QVariantMap row = property("availableApps").toList().at(0).toMap();
    EXPECT_EQ(row.size(), 3);
    EXPECT_EQ(row["applicationName"], QVariant(QStringLiteral("Musik ♪")));
    EXPECT_EQ(row["processID"], QVariant(music));
    EXPECT_EQ(row["bundleIdentifier"], QVariant(QStringLiteral("org.example.music")));
}

TEST_F(PropertiesTest, aDeviceIsARowOfThreeFieldsAndCanBeSelectedByIt)
{
    addDevice(blackHole);
    addDevice(otherBlackHole, "BlackHole 16ch");
    coordinator().refreshBlackHole();
    const QVariantList rows = property("blackHoleDevices").toList();
    ASSERT_EQ(rows.size(), 2);
    const QVariantMap row = rows[1].toMap();
    EXPECT_EQ(row.size(), 3);
    EXPECT_EQ(row["id"], QVariant(otherBlackHole));
    EXPECT_EQ(row["name"], QVariant(QStringLiteral("BlackHole 16ch")));
    EXPECT_EQ(row["uid"], QVariant(QStringLiteral("uid-61")));

    EXPECT_EQ(property("selectedBlackHole"), rows[0]);
    set("selectedBlackHole", rows[1]);
    EXPECT_EQ(property("selectedBlackHole"), rows[1]);
    EXPECT_EQ(coordinator().selectedBlackHole(), coordinator().blackHoleDevices()[1]);
}

TEST_F(PropertiesTest, anyValueThatIsNoDeviceSelectsNone)
{
    for (const QVariant &none : {QVariant(), QVariant::fromValue(nullptr), QVariant(QVariantMap()), QVariant(60)}) {
        coordinator().setSelectedBlackHole(BlackHoleDevice{blackHole, "BlackHole 2ch", ""});
        set("selectedBlackHole", none);
        EXPECT_EQ(coordinator().selectedBlackHole(), std::nullopt);
        EXPECT_FALSE(property("selectedBlackHole").isValid());
    }
}

TEST_F(PropertiesTest, anApplicationIsPickedByItsProcess)
{
    set("selectedAppID", 7);
    EXPECT_EQ(coordinator().selectedAppID(), 7);
    EXPECT_EQ(property("selectedAppID"), QVariant(7));
    set("selectedAppID", 8.0); // as a script has its numbers
    EXPECT_EQ(coordinator().selectedAppID(), 8);
}

TEST_F(PropertiesTest, anyValueThatIsNoNumberPicksNone)
{
    for (const QVariant &none :
         {QVariant(), QVariant::fromValue(nullptr), QVariant(QString()), QVariant(QStringLiteral("none"))}) {
        coordinator().setSelectedAppID(7);
        set("selectedAppID", none);
        EXPECT_EQ(coordinator().selectedAppID(), std::nullopt);
        EXPECT_FALSE(property("selectedAppID").isValid());
    }
}

TEST_F(PropertiesTest, gainsAndStatusCanBeWritten)
{
    set("micGain", 0.25F);
    set("appGain", 1.75F);
    set("status", QStringLiteral("Stopped"));
    EXPECT_EQ(coordinator().micGain(), 0.25F);
    EXPECT_EQ(coordinator().appGain(), 1.75F);
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(PropertiesTest, theRestCannotBeWritten)
{
    EXPECT_FALSE(coordinator().setProperty("isRunning", true));
    EXPECT_FALSE(coordinator().setProperty("micFrames", 5));
    EXPECT_FALSE(coordinator().setProperty("appFrames", 5));
    EXPECT_FALSE(coordinator().setProperty("availableApps", QVariantList()));
    EXPECT_FALSE(coordinator().setProperty("blackHoleDevices", QVariantList()));
}
