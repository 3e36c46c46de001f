#include "tests/ui/print_qt.h"
#include "ui/status_announcer.h"

#include <gtest/gtest.h>

namespace tolvenary::test
{

TEST(KindOfStatus, isTheSameForOtherCounts)
{
    EXPECT_EQ(kindOfStatus("Running → BlackHole 2ch  mic:0 app:95232 frames"),
              kindOfStatus("Running → BlackHole 2ch  mic:96256 app:1 frames"));
}

TEST(KindOfStatus, isAnotherForAnotherDevice)
{
    EXPECT_NE(kindOfStatus("Running → BlackHole 2ch  mic:1 app:1 frames"),
              kindOfStatus("Running → BlackHole 16ch  mic:1 app:1 frames"));
}

TEST(KindOfStatus, isAnotherForAnotherText)
{
    EXPECT_NE(kindOfStatus("Idle"), kindOfStatus("Stopped"));
    EXPECT_NE(kindOfStatus(""), kindOfStatus("Stopped"));
}

} // namespace tolvenary::test
