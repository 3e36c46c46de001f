#include "capture/block_conversion.h"

#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tolvenary;
using namespace tolvenary::test;

TEST(OutputCapacity, itIsTheConvertedLengthAndAMarginOf32FramesTruncated)
{
    EXPECT_EQ(outputCapacity(48000, 44100, 512), 589U);
    EXPECT_EQ(outputCapacity(48000, 44100, 1024), 1146U);
    EXPECT_EQ(outputCapacity(48000, 48000, 1024), 1056U);
    EXPECT_EQ(outputCapacity(48000, 96000, 1), 32U);
    EXPECT_EQ(outputCapacity(48000, 48000, 0), 32U);
}

TEST(OutputCapacity, theLargestCountThatFitsIsStillOne)
{
    EXPECT_EQ(outputCapacity(1, 1, std::numeric_limits<std::uint32_t>::max() - 32),
              std::numeric_limits<std::uint32_t>::max());
}

TEST(OutputCapacity, whatIsLessThanNoneByLessThanAFrameIsNone)
{
    EXPECT_EQ(outputCapacity(-65, 2, 1), 0U); // half a frame less
}

TEST(OutputCapacityDeathTest, aCapacityThatIsNo32BitCountStopsTheProgram)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(outputCapacity(1, 1, std::numeric_limits<std::uint32_t>::max() - 31), testing::KilledBySignal(SIGABRT),
                "");
    EXPECT_EXIT(outputCapacity(48000, 0, 512), testing::KilledBySignal(SIGABRT), "") << "infinite";
    EXPECT_EXIT(outputCapacity(0, 0, 512), testing::KilledBySignal(SIGABRT), "") << "not a number";
    EXPECT_EXIT(outputCapacity(-33, 1, 1), testing::KilledBySignal(SIGABRT), "") << "one less than none";
    EXPECT_EXIT(outputCapacity(-48000, 48000, 512), testing::KilledBySignal(SIGABRT), "") << "negative";
}

TEST(OneShotInput, aSecondCallSuppliesNothingAndSaysThatThereIsNoDataNow)
{
    AVAudioPCMBufferPool pool(1, 1024);
    const auto block = makeBuffer(pool, {1, 2, 3});
    OneShotInput input(*block);

    auto status = AVAudioConverterInputStatus::endOfStream;
    EXPECT_EQ(input(1, status), block.get());
    EXPECT_EQ(status, AVAudioConverterInputStatus::haveData);
    for (int call = 0; call < 3; ++call) {
        status = AVAudioConverterInputStatus::endOfStream;
        EXPECT_EQ(input(1, status), nullptr);
        EXPECT_EQ(status, AVAudioConverterInputStatus::noDataNow);
    }
}

namespace
{

class ConvertBlockTest : public testing::Test
{
  protected:
    AVAudioPCMBufferPool m_pool{2, 65536};
};

} // namespace

TEST_F(ConvertBlockTest, oneBlockInWhateverIsReadyOut)
{
    const auto mono = standardFormat(44100, 1);
    const auto converter = AVAudioConverter::make(mono, standardFormat());
    const auto block = makeBuffer(m_pool, std::vector<float>(1024, 0.5F), mono);
    const auto converted = convertBlock(converter.get(), m_pool, *block, standardFormat());
    ASSERT_NE(converted, nullptr);
    EXPECT_EQ(converted->format(), standardFormat());
    EXPECT_EQ(converted->frameCapacity(), 1146U);
    EXPECT_GT(converted->frameLength(), 900U);
    EXPECT_LE(converted->frameLength(), 1115U);
}

TEST_F(ConvertBlockTest, aBlockTooShortToGiveAFrameGivesAnEmptyBuffer)
{
    const auto quadRate = standardFormat(192000);
    const auto converter = AVAudioConverter::make(quadRate, standardFormat());
    const auto block = makeBuffer(m_pool, {0.5F}, quadRate);
    int empty = 0;
    for (int i = 0; i < 4; ++i) {
        const auto converted = convertBlock(converter.get(), m_pool, *block, standardFormat());
        ASSERT_NE(converted, nullptr);
        empty += converted->frameLength() == 0 ? 1 : 0;
    }
    EXPECT_EQ(empty, 3) << "four frames in are one frame out";
}

TEST_F(ConvertBlockTest, withoutAConverterThereIsNoBuffer)
{
    const auto block = makeBuffer(m_pool, {1, 2, 3});
    EXPECT_EQ(convertBlock(nullptr, m_pool, *block, standardFormat()), nullptr);
    EXPECT_EQ(m_pool.freeSlots(), 1U);
}

TEST_F(ConvertBlockTest, withoutAFreeSlotThereIsNoBuffer)
{
    const auto converter = AVAudioConverter::make(standardFormat(), standardFormat());
    const auto block = makeBuffer(m_pool, {1, 2, 3});
    const auto other = makeBuffer(m_pool, {1, 2, 3});
    EXPECT_EQ(convertBlock(converter.get(), m_pool, *block, standardFormat()), nullptr);
}

TEST_F(ConvertBlockTest, aConversionErrorGivesNoBufferAndItsSlotBack)
{
    const auto converter = AVAudioConverter::make(standardFormat(44100), standardFormat());
    const auto block = makeBuffer(m_pool, {1, 2, 3}, standardFormat(96000)); // not what the converter was made for
    EXPECT_EQ(convertBlock(converter.get(), m_pool, *block, standardFormat()), nullptr);
    EXPECT_EQ(m_pool.freeSlots(), 1U);
}
