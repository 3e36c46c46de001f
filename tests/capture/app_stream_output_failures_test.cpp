#include "tests/capture/stream_fixture.h"

#include <gmock/gmock.h>

#include <limits>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::IsEmpty;

namespace
{

/// Each step that may fail, by itself; all that a sample needs else is there.
class AppStreamOutputFailure : public StreamTest
{
  protected:
    void expectDropped(const CMSampleBuffer &sample)
    {
        deliver(sample);
        EXPECT_THAT(m_delivered, IsEmpty());
        EXPECT_EQ(m_pool.freeSlots(), 8U) << "what was made is given back";
        deliver(soundSample({{1, 2}, {3, 4}}));
        EXPECT_EQ(m_delivered.size(), 1U) << "the next one is delivered";
    }

    FakeSampleBuffer m_sample = soundSample({{1, 2, 3, 4}, {5, 6, 7, 8}});
};

using AppStreamOutputDeathTest = AppStreamOutputFailure;

} // namespace

TEST_F(AppStreamOutputFailure, anInvalidSampleIsDroppedUnseen)
{
    m_sample.isValid = false;
    expectDropped(m_sample);
    EXPECT_EQ(m_sample.listsAskedFor(), 0);
}

TEST_F(AppStreamOutputFailure, aSampleWithoutAFormatDescriptionIsDropped)
{
    m_sample.formatDescription.reset();
    expectDropped(m_sample);
}

TEST_F(AppStreamOutputFailure, aSampleThatIsNoSoundIsDropped)
{
    m_sample.formatDescription->streamBasicDescription.reset();
    expectDropped(m_sample);
}

TEST_F(AppStreamOutputFailure, aDescriptionThatIsNoFormatIsDropped)
{
    m_sample.formatDescription->streamBasicDescription = AudioStreamBasicDescription();
    expectDropped(m_sample);
}

TEST_F(AppStreamOutputFailure, aSampleWithoutAFormatIsDroppedWhateverItsCount)
{
    m_sample.numSamples = -1;
    m_sample.formatDescription->streamBasicDescription = AudioStreamBasicDescription();
    expectDropped(m_sample);
    m_delivered.clear();
    m_sample.formatDescription.reset();
    expectDropped(m_sample);
}

TEST_F(AppStreamOutputFailure, aSampleOfNoSamplesIsDropped)
{
    m_sample.numSamples = 0;
    expectDropped(m_sample);
    EXPECT_EQ(m_sample.listsAskedFor(), 0);
}

TEST_F(AppStreamOutputDeathTest, aCountThatIsNo32BitNumberStopsTheProgram)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto deliverCount = [this](CMItemCount count) {
        m_sample.numSamples = count;
        m_output->streamDidOutputSampleBufferOfType(*m_stream, m_sample, SCStreamOutputType::audio);
    };
    EXPECT_EXIT(deliverCount(-1), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(deliverCount(std::numeric_limits<CMItemCount>::min()), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(deliverCount(CMItemCount{1} << 32), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(AppStreamOutputFailure, theLargestCountThatIsANumberIsJustTooMuchForAnyBuffer)
{
    m_sample.numSamples = std::numeric_limits<std::uint32_t>::max();
    expectDropped(m_sample);
}

TEST_F(AppStreamOutputFailure, aSampleThatFindsNoFreeBufferIsDropped)
{
    for (int i = 0; i < 9; ++i)
        deliver(m_sample);
    EXPECT_EQ(m_delivered.size(), 8U);
    EXPECT_EQ(m_sample.listsAskedFor(), 8);
    m_delivered.pop_back();
    deliver(m_sample);
    EXPECT_EQ(m_delivered.size(), 8U);
}

TEST_F(AppStreamOutputFailure, aSampleWhoseBufferListCannotBeHadIsDroppedAndNothingIsKept)
{
    m_sample.bufferListStatus = -12731;
    expectDropped(m_sample);
    EXPECT_EQ(m_sample.listsAskedFor(), 1);
    EXPECT_EQ(m_sample.blocksKept(), 0);
}

TEST_F(AppStreamOutputFailure, aListLongerThanTheRoomOfferedIsDropped)
{
    m_sample.addBuffer(std::vector<float>{9, 9, 9, 9});
    m_sample.addBuffer(std::vector<float>{9, 9, 9, 9});
    expectDropped(m_sample);
    EXPECT_EQ(m_sample.listsAskedFor(), 1);
}

TEST_F(AppStreamOutputFailure, aFormatThatCannotBeConvertedIsDroppedAndTriedAgain)
{
    m_sample.formatDescription->streamBasicDescription->mSampleRate = 44100.5; // no whole number of frames a second
    expectDropped(m_sample);
    EXPECT_EQ(m_output->converter(), nullptr);
    deliver(m_sample);
    EXPECT_EQ(m_delivered.size(), 1U);
    deliver(steadySample(441, 44100));
    EXPECT_EQ(m_delivered.size(), 2U);
}

TEST_F(AppStreamOutputFailure, aFormatThatCannotBeConvertedTakesTheOldConverterAway)
{
    deliver(steadySample(441, 44100));
    ASSERT_NE(m_output->converter(), nullptr);
    m_delivered.clear();
    m_sample.formatDescription->streamBasicDescription->mSampleRate = 44100.5;
    deliver(m_sample);
    EXPECT_THAT(m_delivered, IsEmpty());
    EXPECT_EQ(m_output->converter(), nullptr);
}

TEST_F(AppStreamOutputFailure, aConversionThatFindsNoFreeBufferIsDropped)
{
    for (int i = 0; i < 7; ++i)
        deliver(m_sample);
    deliver(steadySample(441, 44100)); // one buffer for the copy, none for what becomes of it
    EXPECT_EQ(m_delivered.size(), 7U);
    EXPECT_EQ(m_pool.freeSlots(), 1U);
}

TEST_F(AppStreamOutputFailure, aConversionTooLongForAnyBufferIsDropped)
{
    deliver(steadySample(8000, 44100));
    EXPECT_THAT(m_delivered, IsEmpty());
    EXPECT_EQ(m_pool.freeSlots(), 8U);
}
