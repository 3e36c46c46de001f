#include "bench/resamplers.h"

#include "capture/block_conversion.h"
#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"

#include <cstdint>
#include <samplerate.h>
#include <soxr.h>
#include <speex/speex_resampler.h>
#include <stdexcept>

extern "C" {
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace tolvenary::bench
{

namespace
{

/// Room for what comes of the longest block, and for those that let it come in bursts.
std::size_t roomFor(int from, int to)
{
    return longestBlock * static_cast<std::size_t>(to) / static_cast<std::size_t>(from) + 8192;
}

void demand(bool condition, const char *what)
{
    if (!condition)
        throw std::runtime_error(what);
}

std::vector<float> everySecond(const std::vector<float> &interleaved, std::size_t frames)
{
    std::vector<float> left(frames);
    for (std::size_t i = 0; i < frames; ++i)
        left[i] = interleaved[2 * i];
    return left;
}

class Ours final : public Resampler
{
  public:
    Ours(int from, int to)
        : m_from(AVAudioFormat::standardFormat(from, 2).value()),
          m_to(AVAudioFormat::standardFormat(to, 2).value()),
          m_pool(2, 2 * roomFor(from, to) * sizeof(float)),
          m_view(AVAudioPCMBuffer::makeView(m_from)),
          m_converter(AVAudioConverter::make(m_from, m_to, longestBlock))
    {
    }

    std::size_t convert(const StereoBlock &block) override
    {
        m_view->setBorrowed(std::array<const float *, 2>{block.planar[0].data(), block.planar[1].data()},
                            static_cast<std::uint32_t>(block.frames()));
        m_out = convertBlock(m_converter.get(), m_pool, *m_view, m_to);
        return m_out->frameLength();
    }

    std::vector<float> left() const override
    {
        return {m_out->floatChannel(0), m_out->floatChannel(0) + m_out->frameLength()};
    }

  private:
    AVAudioFormat m_from;
    AVAudioFormat m_to;
    AVAudioPCMBufferPool m_pool;
    std::unique_ptr<AVAudioPCMBuffer> m_view;
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioPCMBufferPtr m_out;
};

class Swr final : public Resampler
{
  public:
    Swr(int from, int to)
    {
        AVChannelLayout stereo{};
        av_channel_layout_default(&stereo, 2);
        swr_alloc_set_opts2(&m_context, &stereo, AV_SAMPLE_FMT_FLTP, to, &stereo, AV_SAMPLE_FMT_FLTP, from, 0, nullptr);
        av_opt_set_int(m_context, "filter_size", 160, 0);
        av_opt_set_int(m_context, "filter_type", SWR_FILTER_TYPE_KAISER, 0);
        av_opt_set_double(m_context, "kaiser_beta", 12, 0);
        av_opt_set_double(m_context, "cutoff", 0.966, 0);
        av_opt_set_int(m_context, "phase_shift", 10, 0);
        av_opt_set_int(m_context, "exact_rational", 1, 0);
        av_opt_set_int(m_context, "linear_interp", 1, 0);
        demand(swr_init(m_context) >= 0, "no libswresample");
        for (auto &channel : m_out)
            channel.resize(roomFor(from, to));
    }
    ~Swr() override { swr_free(&m_context); }
    Swr(const Swr &) = delete;
    Swr &operator=(const Swr &) = delete;

    std::size_t convert(const StereoBlock &block) override
    {
        std::array<const std::uint8_t *, 2> in{reinterpret_cast<const std::uint8_t *>(block.planar[0].data()),
                                               reinterpret_cast<const std::uint8_t *>(block.planar[1].data())};
        std::array<std::uint8_t *, 2> out{reinterpret_cast<std::uint8_t *>(m_out[0].data()),
                                          reinterpret_cast<std::uint8_t *>(m_out[1].data())};
        const int made = swr_convert(m_context, out.data(), static_cast<int>(m_out[0].size()), in.data(),
                                     static_cast<int>(block.frames()));
        demand(made >= 0, "libswresample fails");
        m_made = static_cast<std::size_t>(made);
        return m_made;
    }

    std::vector<float> left() const override
    {
        return {m_out[0].begin(), m_out[0].begin() + static_cast<std::ptrdiff_t>(m_made)};
    }

  private:
    SwrContext *m_context = nullptr;
    std::array<std::vector<float>, 2> m_out;
    std::size_t m_made = 0;
};

/// What the three with interleaved samples have in common.
class Interleaved : public Resampler
{
  public:
    Interleaved(int from, int to) : m_out(2 * roomFor(from, to)) {}

    std::size_t convert(const StereoBlock &block) override
    {
        m_made = convertInto(block.interleaved.data(), block.frames(), m_out.data(), m_out.size() / 2);
        return m_made;
    }
    std::vector<float> left() const override { return everySecond(m_out, m_made); }

  private:
    virtual std::size_t convertInto(const float *in, std::size_t inFrames, float *out, std::size_t room) = 0;

    std::vector<float> m_out;
    std::size_t m_made = 0;
};

class Soxr final : public Interleaved
{
  public:
    Soxr(int from, int to) : Interleaved(from, to)
    {
        soxr_error_t error = nullptr;
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
        m_soxr = soxr_create(from, to, 2, &error, nullptr, &quality, nullptr);
        demand(error == nullptr, "no soxr");
    }
    ~Soxr() override { soxr_delete(m_soxr); }
    Soxr(const Soxr &) = delete;
    Soxr &operator=(const Soxr &) = delete;

  private:
    std::size_t convertInto(const float *in, std::size_t inFrames, float *out, std::size_t room) override
    {
        std::size_t taken = 0;
        std::size_t made = 0;
        demand(soxr_process(m_soxr, in, inFrames, &taken, out, room, &made) == nullptr && taken == inFrames,
               "soxr fails");
        return made;
    }

    soxr_t m_soxr = nullptr;
};

class Speex final : public Interleaved
{
  public:
    Speex(int from, int to) : Interleaved(from, to)
    {
        int error = 0;
        m_state = speex_resampler_init(2, static_cast<spx_uint32_t>(from), static_cast<spx_uint32_t>(to), 7, &error);
        demand(error == 0, "no speexdsp");
    }
    ~Speex() override { speex_resampler_destroy(m_state); }
    Speex(const Speex &) = delete;
    Speex &operator=(const Speex &) = delete;

  private:
    std::size_t convertInto(const float *in, std::size_t inFrames, float *out, std::size_t room) override
    {
        auto taken = static_cast<spx_uint32_t>(inFrames);
        auto made = static_cast<spx_uint32_t>(room);
        demand(speex_resampler_process_interleaved_float(m_state, in, &taken, out, &made) == 0 && taken == inFrames,
               "speexdsp fails");
        return made;
    }

    SpeexResamplerState *m_state = nullptr;
};

class SampleRate final : public Interleaved
{
  public:
    SampleRate(int from, int to) : Interleaved(from, to), m_ratio(static_cast<double>(to) / from)
    {
        int error = 0;
        m_state = src_new(SRC_SINC_BEST_QUALITY, 2, &error);
        demand(m_state != nullptr, "no libsamplerate");
    }
    ~SampleRate() override { src_delete(m_state); }
    SampleRate(const SampleRate &) = delete;
    SampleRate &operator=(const SampleRate &) = delete;

  private:
    std::size_t convertInto(const float *in, std::size_t inFrames, float *out, std::size_t room) override
    {
        SRC_DATA data{};
        data.data_in = in;
        data.data_out = out;
        data.input_frames = static_cast<long>(inFrames);
        data.output_frames = static_cast<long>(room);
        data.src_ratio = m_ratio;
        demand(src_process(m_state, &data) == 0 && data.input_frames_used == data.input_frames, "libsamplerate fails");
        return static_cast<std::size_t>(data.output_frames_gen);
    }

    SRC_STATE *m_state = nullptr;
    double m_ratio;
};

template <typename Kind> std::unique_ptr<Resampler> make(int from, int to)
{
    return std::make_unique<Kind>(from, to);
}

} // namespace

const std::vector<ResamplerKind> &resamplers()
{
    static const std::vector<ResamplerKind> kinds{{"ours", make<Ours>},
                                                  {"libswresample, same filter", make<Swr>},
                                                  {"soxr HQ", make<Soxr>},
                                                  {"speexdsp q7", make<Speex>},
                                                  {"libsamplerate BEST", make<SampleRate>}};
    return kinds;
}

} // namespace tolvenary::bench
