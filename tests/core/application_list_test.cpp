#include "tests/core/coordinator_fixture.h"

#include <QThread>
#include <gmock/gmock.h>

#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class ApplicationListTest : public CoordinatorTest
{
  protected:
    std::vector<std::string> names()
    {
        std::vector<std::string> result;
        for (const auto &application : coordinator().availableApps())
            result.push_back(application.applicationName);
        return result;
    }
    std::vector<std::int32_t> processes()
    {
        std::vector<std::int32_t> result;
        for (const auto &application : coordinator().availableApps())
            result.push_back(application.processID);
        return result;
    }
};

} // namespace

TEST_F(ApplicationListTest, allOfTheContentIsAskedFor)
{
    m_platform.shareableContent().askedToExcludeDesktopWindows = true;
    m_platform.shareableContent().askedForOnScreenWindowsOnly = true;
    refreshApps();
    EXPECT_FALSE(m_platform.shareableContent().askedToExcludeDesktopWindows);
    EXPECT_FALSE(m_platform.shareableContent().askedForOnScreenWindowsOnly);
}

TEST_F(ApplicationListTest, thisProgramAndWhatHasNoNameAreNotListed)
{
    m_platform.processInfo().processID = 555;
    setApplications({{"Tolvenary", 555, "self"}, {"", 2, "nameless"}, {"Music", 3, "music"}});
    refreshApps();
    EXPECT_THAT(coordinator().availableApps(), ElementsAre(SCRunningApplication{"Music", 3, "music"}));
}

TEST_F(ApplicationListTest, itIsTheProcessThatTellsWhoWeAreNotTheName)
{
    m_platform.processInfo().processID = 555;
    setApplications({{"Tolvenary", 556, "com.tolvenary.app"}, {"Musik", 555, "music"}, {" ", 557, ""}});
    refreshApps();
    EXPECT_THAT(processes(), ElementsAre(557, 556)) << "and a blank is a name";
}

TEST_F(ApplicationListTest, namesAreSortedWithoutRegardToCase)
{
    setApplications({{"Zulu", 1, ""}, {"zoom", 2, ""}, {"Arc", 3, ""}});
    refreshApps();
    EXPECT_THAT(names(), ElementsAre("Arc", "zoom", "Zulu"));
}

TEST_F(ApplicationListTest, namesAreComparedInLowerCaseAndNoOther)
{
    setApplications({{"Arc", 1, ""}, {"_tool", 2, ""}});
    refreshApps();
    EXPECT_THAT(processes(), ElementsAre(2, 1)) << "an underscore is before a, and behind A";
    setApplications({{"ſa", 1, ""}, {"sz", 2, ""}});
    refreshApps();
    EXPECT_THAT(processes(), ElementsAre(2, 1)) << "the long s is in lower case already, and behind z";
}

TEST_F(ApplicationListTest, equalNamesStayInTheSystemsOrder)
{
    setApplications({{"arc", 9, ""}, {"Zed", 1, ""}, {"Arc", 2, ""}, {"ARC", 5, ""}});
    refreshApps();
    EXPECT_THAT(processes(), ElementsAre(9, 2, 5, 1));
}

TEST_F(ApplicationListTest, equalNamesStayInTheSystemsOrderHoweverManyThereAre)
{
    std::vector<SCRunningApplication> applications;
    for (std::int32_t process = 300; process > 200; --process)
        applications.push_back({process % 2 == 0 ? "Tab" : "tab", process, ""});
    setApplications(applications);
    refreshApps();
    EXPECT_EQ(coordinator().availableApps(), applications);
}

TEST_F(ApplicationListTest, lettersOfAnyAlphabetAreSortedByTheirLowerCase)
{
    setApplications({{"éclair", 1, ""}, {"Éa", 2, ""}, {"Zed", 3, ""}, {"😀", 4, ""}, {"\xEF\xBC\xA1", 5, ""}});
    refreshApps();
    EXPECT_THAT(processes(), ElementsAre(3, 2, 1, 5, 4)) << "plain order: what has an accent comes behind z, and what "
                                                            "lies beyond the basic plane behind all of it";
}

TEST_F(ApplicationListTest, aFailureIsToldAndTheOldListStays)
{
    setApplications({{"Music", 3, "music"}});
    refreshApps();
    m_platform.shareableContent().applications.set(
        tl::unexpected(Error{"Tolvenary", 1, "The sound server cannot be reached."}));
    refreshApps();
    EXPECT_EQ(status(), "App list error: The sound server cannot be reached.");
    EXPECT_THAT(names(), ElementsAre("Music"));
}

TEST_F(ApplicationListTest, aListThatCanBeHadSaysNothing)
{
    coordinator().setStatus(QStringLiteral("Stopped"));
    setApplications({{"Music", 3, "music"}});
    refreshApps();
    EXPECT_EQ(status(), "Stopped");
}

TEST_F(ApplicationListTest, anEmptyListIsNoError)
{
    refreshApps();
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(status(), "Idle");
}

TEST_F(ApplicationListTest, aRefreshNeitherPicksNorClearsThePick)
{
    setApplications({{"Music", music, "music"}});
    refreshApps();
    EXPECT_EQ(coordinator().selectedAppID(), std::nullopt);

    coordinator().setSelectedAppID(music);
    setApplications({});
    refreshApps();
    EXPECT_EQ(coordinator().selectedAppID(), music);
    start();
    EXPECT_EQ(status(), "Pick an app first.");
}

TEST_F(ApplicationListTest, anAnswerFromAnotherThreadIsPublishedOnTheMainThread)
{
    setApplications({{"Music", music, "music"}});
    m_platform.shareableContent().applications.holdBack();
    QThread *publishedOn = nullptr;
    QObject::connect(
        &coordinator(), &MixCoordinator::availableAppsChanged, &coordinator(),
        [&] { publishedOn = QThread::currentThread(); }, Qt::DirectConnection);
    refreshApps();
    std::thread([&] { m_platform.shareableContent().applications.deliver(); }).join();
    EXPECT_THAT(names(), IsEmpty());
    ASSERT_TRUE(waitUntil([&] { return !names().empty(); }));
    EXPECT_EQ(publishedOn, QThread::currentThread());
}

TEST_F(ApplicationListTest, anAnswerThatALaterRefreshHasOvertakenIsIgnored)
{
    auto &applications = m_platform.shareableContent().applications;
    applications.holdBack();
    refreshApps();
    refreshApps();
    setApplications({{"Now", 2, ""}});
    applications.deliverLast();
    ASSERT_TRUE(waitUntil([&] { return !names().empty(); }));
    setApplications({{"Before", 1, ""}});
    applications.deliver();
    processEvents();
    EXPECT_THAT(names(), ElementsAre("Now"));
}

TEST_F(ApplicationListTest, anAnswerThatComesAfterTheCoordinatorIsGoneIsIgnored)
{
    m_platform.shareableContent().applications.holdBack();
    refreshApps();
    m_coordinator.reset();
    m_platform.shareableContent().applications.deliver();
    processEvents();
    EXPECT_EQ(m_platform.shareableContent().applications.waiting(), 0U);
}
