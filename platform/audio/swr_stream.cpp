#include "platform/audio/swr_stream.h"

#include "platform/audio/av_audio_pcm_buffer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

extern "C" {
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace tolvenary
{

namespace
{

AVSampleFormat sampleFormat(const AVAudioFormat &format)
{
    const bool packed = format.isInterleaved();
    switch (format.commonFormat()) {
    case AVAudioCommonFormat::pcmFormatFloat32:
        return packed ? AV_SAMPLE_FMT_FLT : AV_SAMPLE_FMT_FLTP;
    case AVAudioCommonFormat::pcmFormatFloat64:
        return packed ? AV_SAMPLE_FMT_DBL : AV_SAMPLE_FMT_DBLP;
    case AVAudioCommonFormat::pcmFormatInt16:
        return packed ? AV_SAMPLE_FMT_S16 : AV_SAMPLE_FMT_S16P;
    case AVAudioCommonFormat::pcmFormatInt32:
        return packed ? AV_SAMPLE_FMT_S32 : AV_SAMPLE_FMT_S32P;
    case AVAudioCommonFormat::other:
        break;
    }
    return AV_SAMPLE_FMT_NONE;
}

AVChannelLayout layoutOf(const AVAudioFormat &format)
{
    // Channels by number alone: their places in a room do not matter, since we say ourselves what goes where.
    AVChannelLayout layout{};
    layout.order = AV_CHANNEL_ORDER_UNSPEC;
    layout.nb_channels = static_cast<int>(format.channelCount());
    return layout;
}

/// How much of input channel `in` goes to output channel `out`.
double share(std::uint32_t in, std::uint32_t out, std::uint32_t inputs, std::uint32_t outputs)
{
    if (out > 1 || in > 1)
        return 0;
    if (inputs == 1)
        return 1;
    if (outputs == 1)
        return 0.5;
    return in == out ? 1 : 0;
}

bool setChannelRule(SwrContext *context, std::uint32_t inputs, std::uint32_t outputs)
{
    if (inputs == outputs)
        return true;
    std::vector<double> matrix;
    for (std::uint32_t out = 0; out < outputs; ++out)
        for (std::uint32_t in = 0; in < inputs; ++in)
            matrix.push_back(share(in, out, inputs, outputs));
    return swr_set_matrix(context, matrix.data(), static_cast<int>(inputs)) >= 0;
}

/// 0.000 dB at 20 kHz, 140 dB of silence where the images are, 87 frames of delay at 44.1 kHz; a rate whose ratio has
/// too many phases for an exact filter bank is interpolated between them.
bool setFilter(SwrContext *context)
{
    return av_opt_set_int(context, "filter_size", SwrStream::filterFrames, 0) >= 0 &&
           av_opt_set_int(context, "filter_type", SWR_FILTER_TYPE_KAISER, 0) >= 0 &&
           av_opt_set_double(context, "kaiser_beta", 12, 0) >= 0 &&
           av_opt_set_double(context, "cutoff", 0.966, 0) >= 0 && av_opt_set_int(context, "phase_shift", 10, 0) >= 0 &&
           av_opt_set_int(context, "exact_rational", 1, 0) >= 0 && av_opt_set_int(context, "linear_interp", 1, 0) >= 0;
}

bool isWholeRate(double rate)
{
    return rate == std::floor(rate) && rate >= 1 && rate <= double{std::numeric_limits<int>::max()};
}

/// The two rates as libswresample takes them. If they are equal, it is not told the true one, which need not be a whole
/// number.
struct Rates {
    int from = 48000;
    int to = 48000;
};

std::optional<Rates> ratesOf(const AVAudioFormat &from, const AVAudioFormat &to)
{
    if (from.sampleRate() == to.sampleRate())
        return Rates{};
    if (!isWholeRate(from.sampleRate()) || !isWholeRate(to.sampleRate()))
        return std::nullopt;
    const auto [lower, higher] = std::minmax({from.sampleRate(), to.sampleRate()});
    if (higher > lower * SwrStream::greatestRatio)
        return std::nullopt;
    return Rates{static_cast<int>(from.sampleRate()), static_cast<int>(to.sampleRate())};
}

using Planes = std::array<std::uint8_t *, AVAudioPCMBuffer::maxBuffers>;

} // namespace

void SwrStream::Free::operator()(SwrContext *context) const
{
    swr_free(&context);
}

std::unique_ptr<SwrStream> SwrStream::make(const AVAudioFormat &from, const AVAudioFormat &to)
{
    const auto rates = ratesOf(from, to);
    if (!rates)
        return nullptr;
    AVChannelLayout inLayout = layoutOf(from);
    AVChannelLayout outLayout = layoutOf(to);
    SwrContext *made = nullptr;
    const int result = swr_alloc_set_opts2(&made, &outLayout, sampleFormat(to), rates->to, &inLayout,
                                           sampleFormat(from), rates->from, 0, nullptr);
    std::unique_ptr<SwrContext, Free> context(made);
    if (result < 0 || av_opt_set_sample_fmt(made, "internal_sample_fmt", AV_SAMPLE_FMT_FLTP, 0) < 0 ||
        !setFilter(made) || !setChannelRule(made, from.channelCount(), to.channelCount()) || swr_init(made) < 0)
        return nullptr;
    return std::unique_ptr<SwrStream>(new SwrStream(std::move(context)));
}

std::int32_t SwrStream::convert(ConstAudioBufferList in, std::uint32_t inFrames, AudioBufferList out,
                                std::uint32_t outFrames)
{
    Planes inPlanes{};
    Planes outPlanes{};
    for (std::size_t i = 0; i < in.size(); ++i)
        inPlanes[i] = static_cast<std::uint8_t *>(in[i].mData);
    for (std::size_t i = 0; i < out.size(); ++i)
        outPlanes[i] = static_cast<std::uint8_t *>(out[i].mData);
    // libswresample only reads here, whatever its signature says.
    auto *const readable = const_cast<const std::uint8_t **>(inPlanes.data());
    return swr_convert(m_context.get(), outPlanes.data(), static_cast<int>(outFrames), readable,
                       static_cast<int>(inFrames));
}

} // namespace tolvenary
