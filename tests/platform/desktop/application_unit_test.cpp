#include "platform/desktop/application_unit.h"

#include <gmock/gmock.h>

namespace tolvenary
{

namespace
{

using testing::ElementsAre;

const std::string session = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";

std::vector<std::string> candidatesIn(const std::string &unit)
{
    const auto found = applicationUnitOf(session + unit + "\n");
    return found ? found->candidateIDs : std::vector<std::string>();
}

TEST(ApplicationUnit, aScopeCarriesTheIdBetweenPrefixAndRandomPart)
{
    EXPECT_THAT(candidatesIn("app-org.example.Player-12345.scope"), ElementsAre("org.example.Player"));
}

TEST(ApplicationUnit, aLauncherMayStandBeforeTheId)
{
    EXPECT_THAT(candidatesIn("app-gnome-org.example.Player-12345.scope"),
                ElementsAre("gnome-org.example.Player", "org.example.Player"));
}

TEST(ApplicationUnit, theLongestCandidateComesFirstWhereDashesAreNotEscaped)
{
    EXPECT_THAT(candidatesIn("app-gnome-web-browser-esr-99.scope"),
                ElementsAre("gnome-web-browser-esr", "web-browser-esr", "browser-esr", "esr"));
}

TEST(ApplicationUnit, escapedBytesAreRead)
{
    EXPECT_THAT(candidatesIn(R"(app-gnome-web\x2dbrowser-99.scope)"), ElementsAre("gnome-web-browser", "web-browser"));
    EXPECT_THAT(candidatesIn(R"(app-d\xc3\xa9mo-99.scope)"), ElementsAre("démo"));
}

TEST(ApplicationUnit, aBrokenEscapeIsTakenAsItStands)
{
    EXPECT_THAT(candidatesIn(R"(app-a\x2-99.scope)"), ElementsAre(R"(a\x2)"));
    EXPECT_THAT(candidatesIn(R"(app-a\xzz-99.scope)"), ElementsAre(R"(a\xzz)"));
    EXPECT_THAT(candidatesIn(R"(app-a\-99.scope)"), ElementsAre(R"(a\)"));
}

TEST(ApplicationUnit, aServiceCarriesItsRandomPartBehindAnAt)
{
    EXPECT_THAT(candidatesIn("app-org.example.Player@8f2.service"), ElementsAre("org.example.Player"));
    EXPECT_THAT(candidatesIn("app-org.example.Player.service"), ElementsAre("org.example.Player"));
}

TEST(ApplicationUnit, theInnermostUnitIsTheApplicationsOwn)
{
    const auto unit = applicationUnitOf(session + "app-terminal-1.scope/app-org.example.Player-2.scope/inner\n");
    ASSERT_TRUE(unit);
    EXPECT_EQ(unit->name, "app-org.example.Player-2.scope");
}

TEST(ApplicationUnit, linesOfOldControllersArePassedOver)
{
    const auto unit = applicationUnitOf("12:cpu:/app-wrong-1.scope\n1:name=x:/\n" + session + "app-right-2.scope\n");
    ASSERT_TRUE(unit);
    EXPECT_THAT(unit->candidateIDs, ElementsAre("right"));
}

TEST(ApplicationUnit, aProcessOutsideApplicationUnitsHasNone)
{
    for (const auto *text : {"", "\n", "0::/\n", "0::/init.scope", "0::/session-2.scope\n", "0::/app-.scope",
                             "0::/app-9.scope", "0::/app-x.slice", "0::/app-.service", "junk"})
        EXPECT_EQ(applicationUnitOf(text), std::nullopt) << text;
}

} // namespace

} // namespace tolvenary
