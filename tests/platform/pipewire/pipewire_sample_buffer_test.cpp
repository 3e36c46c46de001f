#include "platform/pipewire/pipewire_sample_buffer.h"

#include "platform/audio_buffer_list.h"
#include "tests/platform/audio/test_blocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

class PipeWireSampleBufferTest : public testing::Test
{
  protected:
    PipeWireSampleBufferTest()
    {
        Samples samples(3);
        samples[0] = {1, 2, 3};
        samples[1] = {4, 5, 6};
        const std::array<const float *, 2> channels{samples[0].data(), samples[1].data()};
        m_queue.push({channels, 3}, 44100);
        m_buffer.emplace(m_queue.pop());
    }

    OSStatus getList(std::span<std::byte> bytes, CMBlockBuffer &block, std::size_t *needed = nullptr)
    {
        return m_buffer->CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(
            needed, bytes, kCMSampleBufferFlag_AudioBufferList_Assure16ByteAlignment, block);
    }

    SampleQueue m_queue;
    std::optional<PipeWireSampleBuffer> m_buffer;
};

std::vector<float> samplesIn(const AudioBuffer &buffer)
{
    std::vector<float> samples(buffer.mDataByteSize / sizeof(float));
    std::memcpy(samples.data(), buffer.mData, buffer.mDataByteSize);
    return samples;
}

} // namespace

TEST_F(PipeWireSampleBufferTest, itTellsTheFormatAndTheNumberOfItsSamples)
{
    EXPECT_TRUE(m_buffer->CMSampleBufferIsValid());
    EXPECT_EQ(m_buffer->CMSampleBufferGetNumSamples(), 3);
    ASSERT_NE(m_buffer->CMSampleBufferGetFormatDescription(), nullptr);
    EXPECT_EQ(m_buffer->CMSampleBufferGetFormatDescription()->streamBasicDescription,
              standardFormat(44100).streamDescription());
}

TEST_F(PipeWireSampleBufferTest, itsListHasABufferAChannelAndIsWrittenIntoMemoryOfTheCallers)
{
    std::vector<std::byte> bytes(audioBufferListSize(3));
    CMBlockBuffer block;
    std::size_t needed = 0;
    ASSERT_EQ(getList(bytes, block, &needed), noErr);
    EXPECT_EQ(needed, 40U);
    const auto list = readAudioBufferList(bytes);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_THAT(samplesIn(list[0]), testing::ElementsAre(1, 2, 3));
    EXPECT_THAT(samplesIn(list[1]), testing::ElementsAre(4, 5, 6));
    for (const AudioBuffer &buffer : list)
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.mData) % 16, 0U);
}

TEST_F(PipeWireSampleBufferTest, memoryThatIsTooSmallIsAFailureThatTellsWhatIsNeeded)
{
    std::vector<std::byte> bytes(39);
    CMBlockBuffer block;
    std::size_t needed = 0;
    EXPECT_EQ(getList(bytes, block, &needed), -ENOSPC);
    EXPECT_EQ(needed, 40U);
    EXPECT_EQ(block, nullptr);
}

TEST_F(PipeWireSampleBufferTest, whoKeepsTheBlockKeepsTheSamples)
{
    std::vector<std::byte> bytes(audioBufferListSize(2));
    CMBlockBuffer block;
    ASSERT_EQ(getList(bytes, block), noErr);
    m_buffer.reset();
    for (std::uint32_t i = 0; i < SampleQueue::blocks; ++i) { // all the others
        const Samples other(3, 1);
        m_queue.push(other.constBlock(), 44100);
    }
    EXPECT_EQ(m_queue.size(), SampleQueue::blocks - 1) << "one is kept";
    EXPECT_THAT(samplesIn(readAudioBufferList(bytes)[0]), testing::ElementsAre(1, 2, 3));
    block.reset();
    const Samples other(3, 1);
    m_queue.push(other.constBlock(), 44100);
    EXPECT_EQ(m_queue.size(), SampleQueue::blocks);
}
