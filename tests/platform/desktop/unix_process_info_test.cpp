#include "platform/desktop/unix_process_info.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace tolvenary
{

namespace
{

TEST(UnixProcessInfo, theProcessIsThisOne)
{
    EXPECT_EQ(UnixProcessInfo().processIdentifier(), getpid());
}

TEST(UnixProcessInfo, aUuidIsUpperCaseAndHyphenated)
{
    EXPECT_THAT(UnixProcessInfo().makeUUIDString(),
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
}

TEST(UnixProcessInfo, everyUuidIsNew)
{
    UnixProcessInfo info;
    EXPECT_NE(info.makeUUIDString(), info.makeUUIDString());
}

} // namespace

} // namespace tolvenary
