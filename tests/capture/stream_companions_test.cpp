#include "capture/screen_sink_output.h"
#include "capture/stream_error_delegate.h"
#include "tests/capture/stream_fixture.h"

#include <gmock/gmock.h>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ScreenSinkOutput, whateverItIsGivenIsThrownAwayUntouched)
{
    FakePlatform platform;
    const auto stream = platform.captureStreams().makeStream({}, {});
    const auto sink = std::make_shared<ScreenSinkOutput>();
    const auto sample = soundSample({{1, 2}, {3, 4}});
    for (const auto type : {SCStreamOutputType::screen, SCStreamOutputType::audio, SCStreamOutputType::microphone}) {
        stream->addStreamOutput(sink, type);
        stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
        EXPECT_EQ(platform.captureStreams().deliver(sample, type), 1);
    }
    EXPECT_EQ(sample.listsAskedFor(), 0);
    EXPECT_EQ(sample.blocksKept(), 0);
}

namespace
{

class StreamErrorDelegateTest : public testing::Test
{
  protected:
    FakePlatform m_platform;
    std::vector<Error> m_errors;
    std::shared_ptr<StreamErrorDelegate> m_delegate =
        std::make_shared<StreamErrorDelegate>([this](const Error &error) { m_errors.push_back(error); });
    std::unique_ptr<SCStream> m_stream = m_platform.captureStreams().makeStream({}, m_delegate);
    const Error m_error{"domain", -3815, "The display went away."};
};

} // namespace

TEST_F(StreamErrorDelegateTest, theErrorThatEndsTheStreamIsPassedOnAsItIs)
{
    m_stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
    EXPECT_THAT(m_errors, IsEmpty());
    ASSERT_TRUE(m_platform.captureStreams().stopWithError(m_error));
    EXPECT_THAT(m_errors, ElementsAre(m_error));
    EXPECT_FALSE(m_platform.captureStreams().stopWithError(m_error));
    EXPECT_EQ(m_errors.size(), 1U);
}

TEST_F(StreamErrorDelegateTest, aDelegateThatHasGoneIsNotToldAnyMore)
{
    m_stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
    m_delegate.reset();
    ASSERT_TRUE(m_platform.captureStreams().stopWithError(m_error));
    EXPECT_THAT(m_errors, IsEmpty());
}
