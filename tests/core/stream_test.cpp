#include "platform/fake/fake_sample_buffer.h"
#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace
{

/// `frames` frames of stereo sound in the mix format.
FakeSampleBuffer sound(float value, std::uint32_t frames)
{
    FakeSampleBuffer sample;
    sample.formatDescription = CMFormatDescription{standardFormat().streamDescription()};
    sample.setPlanar({std::vector<float>(frames, value), std::vector<float>(frames, value)});
    return sample;
}

class StreamFieldsTest : public CoordinatorTest
{
  protected:
    FakeCaptureStreams &streams() { return m_platform.captureStreams(); }

    /// A running stream with its companions, in the coordinator's hands.
    void setRunningStream()
    {
        auto output = coordinator().makeStreamOutput();
        auto delegate = std::make_shared<StreamErrorDelegate>([](const Error &) {});
        auto sink = std::make_shared<ScreenSinkOutput>();
        auto stream = streams().makeStream({}, delegate);
        stream->addStreamOutput(output, SCStreamOutputType::audio);
        stream->addStreamOutput(sink, SCStreamOutputType::screen);
        stream->startCaptureWithCompletionHandler([](const Result<void> &) {});
        m_output = output;
        m_delegate = delegate;
        m_sink = sink;
        coordinator().setStream(std::move(stream), std::move(output), std::move(delegate), std::move(sink));
    }
    int deliver(float value, std::uint32_t frames)
    {
        return streams().deliver(sound(value, frames), SCStreamOutputType::audio);
    }

    std::weak_ptr<AppStreamOutput> m_output;
    std::weak_ptr<StreamErrorDelegate> m_delegate;
    std::weak_ptr<ScreenSinkOutput> m_sink;
};

} // namespace

TEST_F(StreamFieldsTest, theStartSequenceMakesNoStream)
{
    pickAllAndStart();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_FALSE(coordinator().hasStream());
    EXPECT_TRUE(streams().filters().empty());
}

TEST_F(StreamFieldsTest, whatAStreamDeliversIsCountedAndPlayedAsTheTapsSoundIs)
{
    pickAllAndStart();
    setRunningStream();
    ASSERT_EQ(deliver(0.5F, 4), 1);
    EXPECT_THAT(outputCycle(4), ElementsAre(0.5F, 0.5F, 0.5F, 0.5F));
    passTicks(1);
    EXPECT_EQ(coordinator().appFrames(), 4U);
    EXPECT_EQ(coordinator().micFrames(), 0U);
}

TEST_F(StreamFieldsTest, teardownHasTheStreamStoppedAndDoesNotWaitForIt)
{
    pickAllAndStart();
    setRunningStream();
    streams().stopped.holdBack();
    coordinator().teardown();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(coordinator().hasStream());
    EXPECT_EQ(calls().count("stopCapture"), 0) << "in a task of its own";

    processEvents();
    EXPECT_EQ(calls().count("stopCapture"), 1);
    EXPECT_FALSE(streams().isRunning());
    EXPECT_EQ(streams().alive(), 1) << "kept until it has stopped";

    streams().stopped.deliver();
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
    EXPECT_EQ(calls().count("stopCapture"), 1);
}

TEST_F(StreamFieldsTest, teardownLetsGoOfTheCompanionsAtOnce)
{
    pickAllAndStart();
    setRunningStream();
    EXPECT_FALSE(m_output.expired() || m_delegate.expired() || m_sink.expired());
    coordinator().teardown();
    EXPECT_TRUE(m_output.expired());
    EXPECT_TRUE(m_delegate.expired());
    EXPECT_TRUE(m_sink.expired());
    EXPECT_EQ(deliver(0.5F, 4), 0) << "the stream still runs, but nobody listens";
}

TEST_F(StreamFieldsTest, teardownLetsGoOfTheCompanionsAfterTheMeterAndBeforeTheTap)
{
    pickAllAndStart();
    std::shared_ptr<void> sign(nullptr, [this](void *) { calls().note("~StreamErrorDelegate"); });
    auto delegate = std::make_shared<StreamErrorDelegate>([sign = std::move(sign)](const Error &) {});
    coordinator().setStream(nullptr, nullptr, std::move(delegate), nullptr);
    calls().clearLog();
    coordinator().teardown();
    ASSERT_GE(calls().log().size(), 3U);
    EXPECT_THAT(std::vector(calls().log().begin(), calls().log().begin() + 3),
                ElementsAre("invalidate", "~StreamErrorDelegate", "AudioDeviceStop"));
}

TEST_F(StreamFieldsTest, aStopThatFailsIsIgnored)
{
    pickAllAndStart();
    setRunningStream();
    calls().fail("stopCapture", -5);
    const std::string before = status();
    coordinator().teardown();
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
    EXPECT_EQ(status(), before);
    EXPECT_EQ(calls().count("stopCapture"), 1);
}

TEST_F(StreamFieldsTest, aStreamIsStoppedAlsoWhenNothingElseRuns)
{
    setRunningStream();
    coordinator().teardown();
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
    EXPECT_FALSE(m_platform.holdsAnything());
    EXPECT_EQ(status(), "Idle");
}

TEST_F(StreamFieldsTest, aSecondTeardownStopsNothingTwice)
{
    setRunningStream();
    coordinator().teardown();
    coordinator().teardown();
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
    EXPECT_EQ(calls().count("stopCapture"), 1);
}

TEST_F(StreamFieldsTest, aFailedStartStopsTheStreamToo)
{
    pickAll();
    setRunningStream();
    calls().fail("AudioHardwareCreateProcessTap", -1);
    start();
    EXPECT_FALSE(coordinator().hasStream());
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
}

TEST_F(StreamFieldsTest, anotherStreamTakesThePlaceOfTheFirstWhichIsStopped)
{
    setRunningStream();
    const auto first = m_output;
    setRunningStream();
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 1; }));
    EXPECT_EQ(calls().count("stopCapture"), 1);
    EXPECT_TRUE(streams().isRunning()) << "the second one";
    EXPECT_TRUE(coordinator().hasStream());
}

namespace
{

/// Which of the four fields is empty; bit 0 is the stream.
class EmptyStreamFields : public StreamFieldsTest, public testing::WithParamInterface<unsigned>
{
};

} // namespace

TEST_P(EmptyStreamFields, areAcceptedByTeardown)
{
    const auto isSet = [](unsigned bit) { return (GetParam() & 1U << bit) == 0; };
    auto stream = isSet(0) ? streams().makeStream({}, {}) : nullptr;
    auto output = isSet(1) ? coordinator().makeStreamOutput() : nullptr;
    auto delegate = isSet(2) ? std::make_shared<StreamErrorDelegate>([](const Error &) {}) : nullptr;
    auto sink = isSet(3) ? std::make_shared<ScreenSinkOutput>() : nullptr;
    m_output = output;
    m_delegate = delegate;
    m_sink = sink;
    coordinator().setStream(std::move(stream), std::move(output), std::move(delegate), std::move(sink));
    EXPECT_EQ(coordinator().hasStream(), isSet(0));
    coordinator().teardown();
    EXPECT_TRUE(m_output.expired() && m_delegate.expired() && m_sink.expired());
    EXPECT_TRUE(waitUntil([&] { return streams().alive() == 0; }));
    EXPECT_EQ(calls().count("stopCapture"), isSet(0) ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Each, EmptyStreamFields, testing::Range(0U, 16U));

TEST_F(StreamFieldsTest, theDestructorEndsALiveStream)
{
    pickAllAndStart();
    setRunningStream();
    ASSERT_EQ(deliver(0.5F, 4), 1); // still in the player
    m_coordinator.reset();
    EXPECT_EQ(streams().alive(), 0);
    EXPECT_TRUE(m_output.expired());
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(StreamFieldsTest, theDestructorEndsAStreamThatIsBeingStopped)
{
    setRunningStream();
    streams().stopped.holdBack();
    coordinator().teardown();
    processEvents();
    ASSERT_EQ(calls().count("stopCapture"), 1);
    m_coordinator.reset();
    EXPECT_EQ(streams().alive(), 0);
    streams().stopped.deliver(); // too late for anybody to care
    processEvents();
}

TEST_F(StreamFieldsTest, theDestructorEndsAStreamThatNobodyHasAskedToStopYet)
{
    setRunningStream();
    coordinator().teardown();
    m_coordinator.reset();
    EXPECT_EQ(streams().alive(), 0);
    processEvents();
    EXPECT_EQ(calls().count("stopCapture"), 0);
}

TEST_F(StreamFieldsTest, whatAnotherThreadDeliversMeanwhileHarmsNeitherTeardownNorTheEnd)
{
    std::atomic<bool> goesOn = true;
    std::atomic<int> delivered = 0;
    pickAllAndStart();
    setRunningStream();
    std::thread queue([&] {
        while (goesOn)
            delivered += deliver(0.5F, 64);
    });
    EXPECT_TRUE(waitUntil([&] { return delivered > 10; }));
    coordinator().teardown();
    processEvents();
    start();
    setRunningStream();
    const int before = delivered;
    EXPECT_TRUE(waitUntil([&] { return delivered > before + 10; }));
    m_coordinator.reset();
    goesOn = false;
    queue.join();
    EXPECT_FALSE(m_platform.holdsAnything());
}
