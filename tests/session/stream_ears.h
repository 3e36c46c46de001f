#pragma once

#include "capture/app_stream_output.h"
#include "capture/screen_sink_output.h"
#include "capture/stream_error_delegate.h"
#include "tests/session/mix_bed.h"

#include <mutex>

namespace tolvenary::session
{

/// A real stream with all that it calls, and what it delivered in the format of the mix.
class StreamEars
{
  public:
    /// Hears one process, or without one all but this.
    explicit StreamEars(MixBed &bed, std::optional<std::int32_t> process = std::nullopt);
    ~StreamEars();
    StreamEars(const StreamEars &) = delete;
    StreamEars &operator=(const StreamEars &) = delete;

    SCStream &stream() { return *m_stream; }

    /// Waits for the answer, running the event loop.
    Result<void> start();
    Result<void> stop();

    /// What is delivered from now on, left and right; at least so many frames. Throws when they do not come.
    std::array<Samples, 2> listen(std::size_t frames);
    /// Amplitudes of the tones, which are all that may be there, in half a second: left, then right. A machine that
    /// wakes up late breaks what the players play: listens again, while it does.
    std::array<std::vector<double>, 2> tones(const std::vector<double> &frequencies);
    /// Whether the tone gets to this amplitude on the left side, within some seconds.
    bool becomesHeard(double frequency, double amplitude);

    /// Frames delivered so far.
    std::size_t frames();
    std::vector<Error> errors();
    /// Of the stream's own samples: each format when it is met first after another.
    std::vector<AudioStreamBasicDescription> formats();
    /// Samples that came for the screen.
    int pictures();

  private:
    class Spy;
    class PictureCounter;

    Result<void> answerOf(const std::function<void(SCStream::CompletionHandler)> &ask);
    void keep(const AVAudioPCMBuffer &buffer);

    MixBed &m_bed;
    AVAudioPCMBufferPool m_pool{8, std::size_t{16384} * 2 * sizeof(float)};
    std::mutex m_mutex; // over what follows
    std::array<Samples, 2> m_samples;
    std::vector<Error> m_errors;

    std::shared_ptr<AppStreamOutput> m_output;
    std::shared_ptr<Spy> m_spy;
    std::shared_ptr<PictureCounter> m_screen;
    std::shared_ptr<StreamErrorDelegate> m_delegate;
    std::unique_ptr<SCStream> m_stream; // declared last: it calls all of the above
};

} // namespace tolvenary::session
