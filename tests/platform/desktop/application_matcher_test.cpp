#include "platform/desktop/application_matcher.h"

#include <gtest/gtest.h>

namespace tolvenary
{

namespace
{

const std::vector<DesktopEntry> installed = {
    {"browser", "Browser", {{"browser"}, {}, {}}},
    {"browser-mail", "Mail in the Browser", {{"browser"}, {}, {"--app=mail"}}},
    {"browser-private", "Private Browser", {{"browser"}, {}, {"--private", "--quiet"}}},
    {"tool", "Tool", {{"python3"}, {"/opt/tool/main.py"}, {}}},
    {"web-browser", "Web", {{"web"}, {}, {}}},
    {"zz-web", "Web again", {{"web"}, {}, {}}},
};

std::string matched(const Process &process)
{
    const auto *entry = ApplicationMatcher(installed).entryOf(process);
    return entry ? entry->id : "none";
}

TEST(ApplicationMatcher, aProcessBelongsToTheEntryThatStartsItsProgram)
{
    EXPECT_EQ(matched({1, 0, "/usr/lib/browser/browser", {"browser"}, ""}), "browser");
    EXPECT_EQ(matched({1, 0, "/usr/bin/other", {"other", "browser"}, ""}), "none");
}

TEST(ApplicationMatcher, theEntryWithTheProcessesOwnArgumentsWins)
{
    EXPECT_EQ(matched({1, 0, "/bin/browser", {"browser", "--app=mail", "--x"}, ""}), "browser-mail");
    EXPECT_EQ(matched({1, 0, "/bin/browser", {"browser", "--private"}, ""}), "browser-private");
}

TEST(ApplicationMatcher, anEntryWithFewerMissingOptionsWins)
{
    EXPECT_EQ(matched({1, 0, "/bin/browser", {"browser", "page"}, ""}), "browser");
}

TEST(ApplicationMatcher, anEntrysOperandsMustAllBeThere)
{
    EXPECT_EQ(matched({1, 0, "/usr/bin/python3", {"python3", "/opt/tool/main.py"}, ""}), "tool");
    EXPECT_EQ(matched({1, 0, "/usr/bin/python3", {"python3", "/srv/main.py"}, ""}), "none");
}

TEST(ApplicationMatcher, amongEqualEntriesTheFirstIdWins)
{
    EXPECT_EQ(matched({1, 0, "/bin/web", {"web"}, ""}), "web-browser");
}

TEST(ApplicationMatcher, aUnitBelongsToTheLongestIdThatIsInstalled)
{
    const ApplicationMatcher matcher(installed);
    const auto *entry = matcher.entryOf(ApplicationUnit{"u", {"gnome-web-browser", "web-browser", "browser"}});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "web-browser");
    EXPECT_FALSE(matcher.entryOf(ApplicationUnit{"u", {"gnome-unknown", "unknown"}}));
}

} // namespace

} // namespace tolvenary
