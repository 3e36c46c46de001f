#include "platform/desktop/installed_applications.h"
#include "platform/desktop/running_applications.h"
#include "tests/platform/desktop/fixture_proc.h"

#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <optional>
#include <thread>

namespace tolvenary
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// The desktop of these tests. Desktop entries are read from the directories that the environment names when the
/// first one is asked for, so it is all there before the first test.
class FixtureDesktop : public testing::Environment
{
  public:
    void SetUp() override
    {
        install("org.example.Player", "Name=Player\nName[de]=Spieler\nExec=" + program("player") + " %U\n");
        install("web-browser", "Name=Web\nExec=" + program("browser") + "\nTryExec=" + program("try-browser") + "\n");
        install("hidden", "Name=Hidden\nNoDisplay=true\nExec=" + program("hidden") + "\n");
        install("foreign", "Name=Foreign\nOnlyShowIn=KDE;\nExec=" + program("foreign") + "\n");
        install("ours", "Name=Ours\nOnlyShowIn=GNOME;\nExec=" + program("ours") + "\n");
        install("missing", "Name=Missing\nTryExec=/nonexistent/x\nExec=" + program("missing") + "\n");
        set("XDG_DATA_HOME", m_folder.path() / "data");
        set("XDG_DATA_DIRS", m_folder.path() / "none");
        set("XDG_CURRENT_DESKTOP", "GNOME");
        set("LC_ALL", "de_DE.UTF-8");
        set("LANGUAGE", "de");
    }

  private:
    static void set(const char *name, const std::string &value) { setenv(name, value.c_str(), 1); }

    std::string program(const std::string &name) { return m_folder.writeProgram("bin/" + name).string(); }

    void install(const std::string &id, const std::string &lines)
    {
        m_folder.write("data/applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\n" + lines);
    }

    TemporaryFolder m_folder;
};

const auto *const desktop = testing::AddGlobalTestEnvironment(new FixtureDesktop);

class StubAudioClients : public AudioClients
{
  public:
    Result<std::vector<AudioClient>> clientsWithStreams() override { return answer; }

    Result<std::vector<AudioClient>> answer;
};

using Applications = Result<std::vector<SCRunningApplication>>;

class RunningApplicationsTest : public testing::Test
{
  protected:
    Applications answered()
    {
        std::optional<Applications> answer;
        {
            RunningApplications running(clients, proc.path());
            running.getShareableContentExcludingDesktopWindows(false, false, [&](Applications applications) {
                answer = std::move(applications);
                ++calls;
            });
        }
        return answer.value_or(failure(-1, "no answer"));
    }

    StubAudioClients clients;
    FixtureProc proc;
    int calls = 0;
};

TEST(InstalledApplications, onlyWhatThisDesktopsMenusShowIsListed)
{
    std::vector<std::string> ids;
    for (const auto &entry : installedApplications())
        ids.push_back(entry.id);
    EXPECT_THAT(ids, ElementsAre("org.example.Player", "ours", "web-browser"));
}

TEST(InstalledApplications, anEntryHasTheNameOfTheUsersLanguageAndItsPrograms)
{
    const auto entries = installedApplications();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].name, "Spieler");
    EXPECT_THAT(entries[0].command.programs, ElementsAre("player"));
    EXPECT_EQ(entries[2].name, "Web");
    EXPECT_THAT(entries[2].command.programs, ElementsAre("browser", "try-browser"));
}

TEST_F(RunningApplicationsTest, streamsAndDesktopApplicationsAreMerged)
{
    proc.add({10, 1, "/usr/bin/player", {"player"}, "0::/\n"});
    proc.add({11, 10, "/usr/bin/player", {"player", "--helper"}, "0::/\n"});
    proc.add({20, 1, "/usr/lib/web", {"web"}, "0::/app.slice/app-gnome-web\\x2dbrowser-77.scope\n"});
    proc.add({30, 1, "/usr/bin/game", {"game"}, "0::/\n"});
    proc.add({40, 1, "/usr/bin/hidden", {"hidden"}, "0::/\n"});
    clients.answer = std::vector<AudioClient>{{11, "Player", "player"}, {30, "Great Game", "game"}};
    const auto applications = answered();
    ASSERT_TRUE(applications);
    EXPECT_THAT(*applications, ElementsAre(SCRunningApplication{"Spieler", 10, "org.example.Player"},
                                           SCRunningApplication{"Web", 20, "web-browser"},
                                           SCRunningApplication{"Great Game", 30, "game"}));
    EXPECT_EQ(calls, 1);
}

TEST_F(RunningApplicationsTest, aSessionWithNothingInItIsAnEmptyList)
{
    const auto applications = answered();
    ASSERT_TRUE(applications);
    EXPECT_THAT(*applications, IsEmpty());
    EXPECT_EQ(calls, 1);
}

TEST_F(RunningApplicationsTest, withoutAProcFileSystemTheStreamsRemain)
{
    std::filesystem::remove_all(proc.path());
    clients.answer = std::vector<AudioClient>{{30, "Great Game", "game"}};
    const auto applications = answered();
    ASSERT_TRUE(applications);
    EXPECT_THAT(*applications, ElementsAre(SCRunningApplication{"Great Game", 30, "game"}));
}

TEST_F(RunningApplicationsTest, aFailureOfTheSoundServerIsTheAnswer)
{
    const Error lost = {NSOSStatusErrorDomain, -32, "The sound server is gone."};
    clients.answer = tl::unexpected(lost);
    proc.add({10, 1, "/usr/bin/player", {"player"}, "0::/\n"});
    const auto applications = answered();
    ASSERT_FALSE(applications);
    EXPECT_EQ(applications.error(), lost);
    EXPECT_EQ(calls, 1);
}

TEST_F(RunningApplicationsTest, theListIsReadOutsideTheCallingThread)
{
    std::thread::id scanner;
    {
        RunningApplications running(clients, proc.path());
        running.getShareableContentExcludingDesktopWindows(
            false, false, [&](const Applications &) { scanner = std::this_thread::get_id(); });
    }
    EXPECT_NE(scanner, std::thread::id());
    EXPECT_NE(scanner, std::this_thread::get_id());
}

TEST_F(RunningApplicationsTest, theCallReturnsWhileAnAnswerIsUnderWay)
{
    std::promise<void> release;
    std::atomic<bool> answeredYet = false;
    RunningApplications running(clients, proc.path());
    running.getShareableContentExcludingDesktopWindows(false, false, [&](const Applications &) {
        release.get_future().wait();
        answeredYet = true;
    });
    EXPECT_FALSE(answeredYet);
    release.set_value();
}

TEST_F(RunningApplicationsTest, destructionWaitsForEveryScanUnderWay)
{
    std::atomic<int> answers = 0;
    {
        RunningApplications running(clients, proc.path());
        for (int i = 0; i < 5; ++i)
            running.getShareableContentExcludingDesktopWindows(i % 2 == 0, i % 3 == 0,
                                                               [&](const Applications &) { ++answers; });
    }
    EXPECT_EQ(answers, 5);
}

} // namespace

} // namespace tolvenary
