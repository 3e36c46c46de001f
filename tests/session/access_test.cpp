#include "tests/session/mix_bed.h"

#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

const std::string denied =
    "Start failed [screen-recording-permission]: Screen Recording permission required for app audio capture. Enable "
    "Tolvenary in System Settings → Privacy & Security → Screen Recording, then quit and relaunch the app. "
    "(Tolvenary 13)";

/// The server itself gives this test program these rights, and all others theirs.
MixBedOptions withRights(const std::string &permissions)
{
    MixBedOptions options;
    options.configuration.accessRules = {{"application.process.binary", "session_access_test", permissions}};
    return options;
}

} // namespace

TEST(Access, aClientThatMayOnlyReadIsDeniedTheCapture)
{
    MixBed bed(withRights("r"));
    bed.launch();
    bed.mix().setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    EXPECT_EQ(bed.pressStart(), denied);
    EXPECT_FALSE(bed.isRunning());
    EXPECT_EQ(bed.pressStart(), denied) << "every start asks again";
}

TEST(Access, aRestrictedClientStillHearsAndIsLetThrough)
{
    MixBed bed(withRights("rx"));
    bed.run();
    EXPECT_TRUE(bed.isRunning());
}

TEST(Access, allRightsAreLetThrough)
{
    MixBed bed(withRights("rwxm"));
    bed.run();
    EXPECT_TRUE(bed.isRunning());
}

} // namespace tolvenary::session
