#pragma once

#include "capture/app_stream_output.h"
#include "platform/fake/fake_platform.h"
#include "platform/fake/fake_sample_buffer.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvenary::test
{

/// Sound of these samples, a vector a channel.
inline FakeSampleBuffer soundSample(const std::vector<std::vector<float>> &channels, double rate = 48000)
{
    FakeSampleBuffer sample;
    const auto format = standardFormat(rate, static_cast<std::uint32_t>(channels.size()));
    sample.formatDescription = CMFormatDescription{format.streamDescription()};
    sample.setPlanar(channels);
    return sample;
}

/// The same value in each of `frames` frames.
inline FakeSampleBuffer steadySample(std::uint32_t frames, double rate, std::uint32_t channels = 2)
{
    return soundSample(std::vector(channels, std::vector<float>(frames, 0.25F)), rate);
}

/// A running stream of a fake system with an output for its sound, and what that delivered.
class StreamTest : public testing::Test
{
  protected:
    StreamTest()
    {
        m_stream->addStreamOutput(m_output, SCStreamOutputType::audio);
        m_stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
    }

    void deliver(const CMSampleBuffer &sample, SCStreamOutputType type = SCStreamOutputType::audio)
    {
        ASSERT_EQ(m_platform.captureStreams().deliver(sample, type), 1);
    }

    FakePlatform m_platform;
    AVAudioPCMBufferPool m_pool{8, 65536};
    std::vector<AVAudioPCMBufferPtr> m_delivered;
    std::shared_ptr<AppStreamOutput> m_output = std::make_shared<AppStreamOutput>(
        m_pool, standardFormat(), [this](AVAudioPCMBufferPtr buffer) { m_delivered.push_back(std::move(buffer)); });
    std::unique_ptr<SCStream> m_stream = m_platform.captureStreams().makeStream({}, {});
};

} // namespace tolvenary::test
