#include "tests/session/stream_ears.h"

#include "platform/sample_buffer.h"
#include "tests/session/support/tone_level.h"

#include <atomic>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

const AVAudioFormat mixFormat = AVAudioFormat::standardFormat(48000, 2).value();

} // namespace

/// Stands before the real output and notes which formats come in.
class StreamEars::Spy final : public SCStreamOutput
{
  public:
    explicit Spy(std::shared_ptr<SCStreamOutput> real) : m_real(std::move(real)) {}

    void streamDidOutputSampleBufferOfType(SCStream &stream, const CMSampleBuffer &sampleBuffer,
                                           SCStreamOutputType type) override
    {
        const auto &format = sampleBuffer.CMSampleBufferGetFormatDescription()->streamBasicDescription.value();
        {
            const std::lock_guard guard(m_mutex);
            if (m_formats.empty() || m_formats.back() != format)
                m_formats.push_back(format);
        }
        m_real->streamDidOutputSampleBufferOfType(stream, sampleBuffer, type);
    }

    std::vector<AudioStreamBasicDescription> formats()
    {
        const std::lock_guard guard(m_mutex);
        return m_formats;
    }

  private:
    std::shared_ptr<SCStreamOutput> m_real;
    std::mutex m_mutex;
    std::vector<AudioStreamBasicDescription> m_formats;
};

class StreamEars::PictureCounter final : public SCStreamOutput
{
  public:
    void streamDidOutputSampleBufferOfType(SCStream &stream, const CMSampleBuffer &sampleBuffer,
                                           SCStreamOutputType type) override
    {
        ++pictures;
        m_sink.streamDidOutputSampleBufferOfType(stream, sampleBuffer, type);
    }

    std::atomic<int> pictures = 0;

  private:
    ScreenSinkOutput m_sink;
};

StreamEars::StreamEars(MixBed &bed, std::optional<std::int32_t> process)
    : m_bed(bed),
      m_output(std::make_shared<AppStreamOutput>(m_pool, mixFormat,
                                                 [this](const AVAudioPCMBufferPtr &buffer) { keep(*buffer); })),
      m_spy(std::make_shared<Spy>(m_output)),
      m_screen(std::make_shared<PictureCounter>()),
      m_delegate(std::make_shared<StreamErrorDelegate>([this](const Error &error) {
          const std::lock_guard guard(m_mutex);
          m_errors.push_back(error);
      })),
      m_stream(bed.platform().captureStreams().makeStream({process}, m_delegate))
{
    if (m_stream->addStreamOutput(m_spy, SCStreamOutputType::audio) != noErr ||
        m_stream->addStreamOutput(m_screen, SCStreamOutputType::screen) != noErr)
        throw std::runtime_error("the stream takes no outputs");
    bed.settle();
}

StreamEars::~StreamEars() = default;

Result<void> StreamEars::start()
{
    return answerOf([this](auto handler) { m_stream->startCaptureWithCompletionHandler(std::move(handler)); });
}

Result<void> StreamEars::stop()
{
    return answerOf([this](auto handler) { m_stream->stopCaptureWithCompletionHandler(std::move(handler)); });
}

Result<void> StreamEars::answerOf(const std::function<void(SCStream::CompletionHandler)> &ask)
{
    struct Answer {
        std::mutex mutex;
        std::optional<Result<void>> result;
    };
    const auto answer = std::make_shared<Answer>();
    ask([answer](const Result<void> &result) {
        const std::lock_guard guard(answer->mutex);
        if (answer->result)
            throw std::logic_error("a second answer");
        answer->result = result;
    });
    const auto isThere = [&] {
        const std::lock_guard guard(answer->mutex);
        return answer->result.has_value();
    };
    if (!m_bed.waitFor(isThere))
        throw std::runtime_error("the stream does not answer");
    return *answer->result;
}

void StreamEars::keep(const AVAudioPCMBuffer &buffer)
{
    const std::lock_guard guard(m_mutex);
    for (std::uint32_t side = 0; side < 2; ++side) {
        const float *samples = buffer.floatChannel(side);
        m_samples[side].insert(m_samples[side].end(), samples, samples + buffer.frameLength());
    }
}

std::array<Samples, 2> StreamEars::listen(std::size_t frames)
{
    const std::size_t before = this->frames();
    if (!m_bed.waitFor([&] { return this->frames() >= before + frames; }))
        throw std::runtime_error("the stream delivers nothing");
    const std::lock_guard guard(m_mutex);
    std::array<Samples, 2> heard;
    for (std::size_t side = 0; side < 2; ++side)
        heard[side].assign(m_samples[side].begin() + static_cast<std::ptrdiff_t>(before), m_samples[side].end());
    return heard;
}

std::array<std::vector<double>, 2> StreamEars::tones(const std::vector<double> &frequencies)
{
    auto heard = listen(24000);
    for (int again = 0; again < 12 && decibels(residueBesideTones(heard[0], 48000, frequencies)) > -80; ++again)
        heard = listen(24000);
    return {toneAmplitudes(heard[0], 48000, frequencies), toneAmplitudes(heard[1], 48000, frequencies)};
}

bool StreamEars::becomesHeard(double frequency, double amplitude)
{
    for (int fifthsOfASecond = 0; fifthsOfASecond < 50; ++fifthsOfASecond) {
        const auto heard = toneAmplitudes(listen(9600)[0], 48000, {frequency});
        if (std::abs(heard[0] - amplitude) < 0.01 * amplitude)
            return true;
    }
    return false;
}

std::size_t StreamEars::frames()
{
    const std::lock_guard guard(m_mutex);
    return m_samples[0].size();
}

std::vector<Error> StreamEars::errors()
{
    const std::lock_guard guard(m_mutex);
    return m_errors;
}

std::vector<AudioStreamBasicDescription> StreamEars::formats()
{
    return m_spy->formats();
}

int StreamEars::pictures()
{
    return m_screen->pictures;
}

} // namespace tolvenary::session
