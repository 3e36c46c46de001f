#include "tests/core/event_loop.h"
#include "ui/application_rows.h"
#include "ui/type_ahead.h"

#include <QVariantMap>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

class Typing : public testing::Test
{
  protected:
    Typing()
    {
        rows.setPlaceholder("— pick an app —");
        QVariantList applications;
        for (const char *name : {"Discord", "Spotify", "Steam", "Sound Recorder", "Thunderbird"})
            applications.append(QVariantMap{{"processID", applications.size() + 1}, {"applicationName", name}});
        rows.setApplications(applications);
        typeAhead.setProperty("model", QVariant::fromValue<PickerModel *>(&rows));
    }

    ApplicationRows rows; // rows 1 to 5 are the applications
    TypeAhead typeAhead;
};

} // namespace

TEST_F(Typing, aLetterLeadsToTheNextRowThatBeginsWithIt)
{
    EXPECT_EQ(typeAhead.rowFor("s", 0), 2);
}

TEST_F(Typing, theSameLetterAgainGoesOnToTheNextSuchRowAndAround)
{
    EXPECT_EQ(typeAhead.rowFor("s", 0), 2);
    EXPECT_EQ(typeAhead.rowFor("s", 2), 3);
    EXPECT_EQ(typeAhead.rowFor("s", 3), 4);
    EXPECT_EQ(typeAhead.rowFor("s", 4), 2);
}

TEST_F(Typing, moreLettersNarrowTheBeginningDown)
{
    EXPECT_EQ(typeAhead.rowFor("S", 0), 2);
    EXPECT_EQ(typeAhead.rowFor("t", 2), 3);
    EXPECT_EQ(typeAhead.rowFor("e", 3), 3);
}

TEST_F(Typing, aSpaceWithinANameBelongsToIt)
{
    EXPECT_FALSE(typeAhead.isLetter(" "));
    int row = 0;
    for (const char *letter : {"s", "o", "u", "n", "d"})
        row = typeAhead.rowFor(letter, row);
    EXPECT_TRUE(typeAhead.isLetter(" "));
    EXPECT_EQ(typeAhead.rowFor(" ", row), 4);
}

TEST_F(Typing, whatBeginsNoRowStaysWhereItIs)
{
    EXPECT_EQ(typeAhead.rowFor("x", 3), 3);
}

TEST_F(Typing, aPauseEndsTheBeginningAndTheNextLetterIsAnother)
{
    typeAhead.rowFor("s", 0);
    ASSERT_TRUE(typeAhead.isLetter(" "));
    ASSERT_TRUE(waitUntil([this] { return !typeAhead.isLetter(" "); }));
    EXPECT_EQ(typeAhead.rowFor("t", 2), 5) << "not the one that begins with st";
}

TEST_F(Typing, keysThatPrintNothingAreNoLetters)
{
    EXPECT_FALSE(typeAhead.isLetter(""));
    EXPECT_FALSE(typeAhead.isLetter("\r"));
    EXPECT_FALSE(typeAhead.isLetter("\t"));
    EXPECT_FALSE(typeAhead.isLetter("\x1b"));
}

} // namespace tolvenary::test
