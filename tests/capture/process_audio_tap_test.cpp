#include "tests/capture/tap_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class ProcessAudioTapTest : public TapTest
{
};

} // namespace

TEST_F(ProcessAudioTapTest, itIsBuiltStepByStepAndReleasedInReverse)
{
    {
        const auto tap = create();
        ASSERT_TRUE(tap);
        ASSERT_TRUE((*tap)->start());
    }
    EXPECT_THAT(calls().log(), ElementsAre("AudioObjectGetPropertyData id2p", "AudioHardwareCreateProcessTap",
                                           "AudioObjectGetPropertyData tuid", "AudioHardwareCreateAggregateDevice",
                                           "AudioObjectGetPropertyData sfmt", "AudioDeviceCreateIOProcIDWithBlock",
                                           "AudioDeviceStart", "AudioDeviceStop", "AudioDeviceDestroyIOProcID",
                                           "AudioHardwareDestroyAggregateDevice", "AudioHardwareDestroyProcessTap"));
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(ProcessAudioTapTest, aNewTapHasEverythingButDoesNotRun)
{
    const auto tap = create();
    ASSERT_TRUE(tap);
    EXPECT_FALSE((*tap)->isRunning());
    EXPECT_EQ(m_platform.processTaps().alive(), 1U);
    EXPECT_EQ(m_platform.aggregateDevices().alive(), 1U);
    EXPECT_EQ(m_platform.ioProcs().alive(), 1U);
    EXPECT_EQ(m_platform.ioProcs().running(), 0U);
}

TEST_F(ProcessAudioTapTest, theTapIsPrivateNotExclusiveAndExcludesTheProcessesInTheirOrder)
{
    objects().processes = {{4242, 77}, {4243, 76}};
    ASSERT_TRUE(create({4242, 4243}));
    const CATapDescription &description = m_platform.processTaps().descriptions().at(0);
    EXPECT_THAT(description.stereoGlobalTapButExcludeProcesses, ElementsAre(77U, 76U));
    EXPECT_EQ(description.uuid, "FA4E0000-0000-4000-8000-000000000001");
    EXPECT_TRUE(description.isPrivate);
    EXPECT_FALSE(description.isExclusive);
}

TEST_F(ProcessAudioTapTest, anEmptyExclusionListTapsEverybody)
{
    ASSERT_TRUE(create({}));
    EXPECT_THAT(m_platform.processTaps().descriptions().at(0).stereoGlobalTapButExcludeProcesses, IsEmpty());
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData id2p"), 0);
}

TEST_F(ProcessAudioTapTest, aProcessWithoutASoundObjectIsExcludedAsZero)
{
    ASSERT_TRUE(create({4242}));
    EXPECT_THAT(m_platform.processTaps().descriptions().at(0).stereoGlobalTapButExcludeProcesses, ElementsAre(0U));
}

TEST_F(ProcessAudioTapTest, theAggregateDeviceIsDescribedBySevenEntries)
{
    ASSERT_TRUE(create());
    const Dictionary &description = m_platform.aggregateDevices().descriptions().at(0);
    const std::string tapUID = "fake-tap-1000";
    ASSERT_EQ(description.size(), 7U);
    EXPECT_EQ(std::get<std::string>(description.at("name")), "TolvenaryTapAggregate");
    EXPECT_EQ(std::get<std::string>(description.at("uid")), "com.tolvenary.tap.FA4E0000-0000-4000-8000-000000000002");
    EXPECT_EQ(std::get<std::string>(description.at("master")), tapUID);
    EXPECT_EQ(std::get<int>(description.at("private")), 1);
    EXPECT_EQ(std::get<int>(description.at("stacked")), 0);
    EXPECT_THAT(std::get<std::vector<Dictionary>>(description.at("subdevices")), IsEmpty());

    const auto &taps = std::get<std::vector<Dictionary>>(description.at("taps"));
    ASSERT_EQ(taps.size(), 1U);
    ASSERT_EQ(taps[0].size(), 2U);
    EXPECT_EQ(std::get<std::string>(taps[0].at("uid")), tapUID);
    EXPECT_EQ(std::get<int>(taps[0].at("drift")), 1);
}

TEST_F(ProcessAudioTapTest, propertiesAreReadFromTheirObjectsInTheirScopesAndSizes)
{
    ASSERT_TRUE(create());
    const auto &reads = m_platform.audioObjectProperties().reads();
    ASSERT_EQ(reads.size(), 3U);
    EXPECT_EQ(reads[0].object, kAudioObjectSystemObject);
    EXPECT_EQ(reads[0].address, (AudioObjectPropertyAddress{fourCharCode("id2p"), fourCharCode("glob"), 0}));
    EXPECT_EQ(reads[0].dataSize, 4U);
    EXPECT_EQ(reads[1].object, 1000U);
    EXPECT_EQ(reads[1].address, (AudioObjectPropertyAddress{fourCharCode("tuid"), fourCharCode("glob"), 0}));
    EXPECT_EQ(reads[1].dataSize, 8U);
    EXPECT_EQ(reads[2].object, 1001U);
    EXPECT_EQ(reads[2].address, (AudioObjectPropertyAddress{fourCharCode("sfmt"), fourCharCode("inpt"), 0}));
    EXPECT_EQ(reads[2].dataSize, 40U);
}

TEST_F(ProcessAudioTapTest, theStreamFormatIsWhatTheDeviceReports)
{
    objects().aggregateFormat = standardFormat(44100).streamDescription();
    const auto tap = create();
    ASSERT_TRUE(tap);
    EXPECT_EQ((*tap)->streamFormat(), objects().aggregateFormat);
    EXPECT_EQ((*tap)->avFormat(), standardFormat(44100));
}

TEST_F(ProcessAudioTapTest, aStreamFormatThatIsNoneIsNoFailure)
{
    objects().aggregateFormat = {};
    const auto tap = create();
    ASSERT_TRUE(tap);
    EXPECT_FALSE((*tap)->avFormat());
    EXPECT_TRUE((*tap)->start());
}

TEST_F(ProcessAudioTapTest, toStartTwiceStartsOnce)
{
    const auto tap = create();
    ASSERT_TRUE((*tap)->start());
    ASSERT_TRUE((*tap)->start());
    EXPECT_TRUE((*tap)->isRunning());
    EXPECT_EQ(calls().count("AudioDeviceStart"), 1);
}

TEST_F(ProcessAudioTapTest, aStoppedTapCannotBeStartedAgainAndDoesNotComplain)
{
    const auto tap = create();
    (*tap)->stop();
    EXPECT_TRUE((*tap)->start());
    EXPECT_FALSE((*tap)->isRunning());
    EXPECT_EQ(calls().count("AudioDeviceStart"), 0);
}

TEST_F(ProcessAudioTapTest, toStopTwiceDestroysEachObjectOnce)
{
    const auto tap = create();
    ASSERT_TRUE((*tap)->start());
    (*tap)->stop();
    (*tap)->stop();
    EXPECT_EQ(calls().count("AudioDeviceStop"), 1);
    EXPECT_EQ(calls().count("AudioDeviceDestroyIOProcID"), 1);
    EXPECT_EQ(calls().count("AudioHardwareDestroyAggregateDevice"), 1);
    EXPECT_EQ(calls().count("AudioHardwareDestroyProcessTap"), 1);
    EXPECT_FALSE((*tap)->isRunning());
}

TEST_F(ProcessAudioTapTest, aTapThatNeverRanIsNotStoppedButReleased)
{
    {
        const auto tap = create();
    }
    EXPECT_EQ(calls().count("AudioDeviceStop"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(ProcessAudioTapTest, failuresOfTheReleaseAreIgnoredAndTheRestIsReleased)
{
    const auto tap = create();
    ASSERT_TRUE((*tap)->start());
    for (const char *operation : {"AudioDeviceStop", "AudioDeviceDestroyIOProcID",
                                  "AudioHardwareDestroyAggregateDevice", "AudioHardwareDestroyProcessTap"})
        calls().fail(operation, -5);
    (*tap)->stop();
    EXPECT_EQ(calls().count("AudioHardwareDestroyProcessTap"), 1);
}
