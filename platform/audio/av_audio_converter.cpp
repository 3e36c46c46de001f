#include "platform/audio/av_audio_converter.h"

#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/audio/swr_stream.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>

namespace tolvenary
{

/// The stream, and the frames that it has made but nobody has taken. An input block is converted whole as soon as it is
/// handed over, because it need not be there any more when the next output is asked for.
struct AVAudioConverter::Impl {
    Impl(const AVAudioFormat &fromFormat, const AVAudioFormat &toFormat, std::unique_ptr<SwrStream> swrStream)
        : from(fromFormat),
          to(toFormat),
          stream(std::move(swrStream)),
          outputPerInput(to.sampleRate() / from.sampleRate())
    {
    }

    bool makeRoomFor(std::uint32_t inputFrames);
    void warmUp(std::uint32_t inputFrames);
    void takeReady(AVAudioPCMBuffer &output);
    std::uint32_t inputFor(std::uint32_t outputFrames) const;
    std::int32_t convert(const AVAudioPCMBuffer &input);

    AVAudioFormat from;
    AVAudioFormat to;
    std::unique_ptr<SwrStream> stream;
    double outputPerInput;
    std::uint32_t roomForInput = 0;
    std::unique_ptr<AVAudioPCMBufferPool> pool;
    AVAudioPCMBufferPtr ready;
    std::uint32_t readyTaken = 0;
};

namespace
{

/// Frames by which an output block may exceed its share of the input's: a resampler rounds, and catches up.
constexpr std::uint32_t roundingFrames = 32;

void copyFrames(const AVAudioPCMBuffer &from, std::uint32_t fromFrame, AVAudioPCMBuffer &to, std::uint32_t toFrame,
                std::uint32_t frames)
{
    const std::size_t frameBytes = from.format().bytesPerFrame();
    const auto sources = from.audioBufferList();
    const auto targets = to.mutableAudioBufferList();
    for (std::size_t i = 0; i < sources.size(); ++i)
        std::memcpy(static_cast<std::byte *>(targets[i].mData) + toFrame * frameBytes,
                    static_cast<const std::byte *>(sources[i].mData) + fromFrame * frameBytes, frames * frameBytes);
}

} // namespace

bool AVAudioConverter::Impl::makeRoomFor(std::uint32_t inputFrames)
{
    const double outputFrames = std::ceil(inputFrames * outputPerInput) + roundingFrames;
    if (outputFrames > double{std::numeric_limits<std::int32_t>::max()})
        return false;
    const auto capacity = static_cast<std::uint32_t>(outputFrames);
    ready.reset();
    pool = std::make_unique<AVAudioPCMBufferPool>(1, std::size_t{capacity} * to.bytesPerFrame() * to.bufferCount());
    ready = pool->make(to, capacity);
    readyTaken = 0;
    roomForInput = inputFrames;
    return ready != nullptr;
}

void AVAudioConverter::Impl::warmUp(std::uint32_t inputFrames)
{
    AVAudioPCMBufferPool silencePool(1, std::size_t{inputFrames} * from.bytesPerFrame() * from.bufferCount());
    const auto silence = silencePool.make(from, inputFrames);
    // libswresample allocates memory when it first needs it: while its filter fills, and for the longest block. So let
    // it do both now; the filter is full of silence then, and the stream delivers from its first block on.
    const double fill = 2 * SwrStream::filterFrames / std::min(outputPerInput, 1.0);
    double fed = 0;
    for (int block = 0; block < 3 || fed < fill; ++block, fed += inputFrames) {
        silence->setFrameLength(inputFrames);
        convert(*silence);
    }
    silence->setFrameLength(0);
    while (convert(*silence) > 0) {
    }
    ready->setFrameLength(0);
    readyTaken = 0;
}

void AVAudioConverter::Impl::takeReady(AVAudioPCMBuffer &output)
{
    const std::uint32_t filled = output.frameLength();
    const std::uint32_t frames = std::min(output.frameCapacity() - filled, ready->frameLength() - readyTaken);
    copyFrames(*ready, readyTaken, output, filled, frames);
    readyTaken += frames;
    output.setFrameLength(filled + frames);
}

std::uint32_t AVAudioConverter::Impl::inputFor(std::uint32_t outputFrames) const
{
    return static_cast<std::uint32_t>(std::ceil(outputFrames / outputPerInput));
}

/// Precondition: nothing is ready.
std::int32_t AVAudioConverter::Impl::convert(const AVAudioPCMBuffer &input)
{
    if (input.frameLength() > roomForInput && !makeRoomFor(input.frameLength()))
        return -1;
    const std::int32_t made = stream->convert(input.audioBufferList(), input.frameLength(),
                                              ready->mutableAudioBufferList(), ready->frameCapacity());
    ready->setFrameLength(made > 0 ? static_cast<std::uint32_t>(made) : 0);
    readyTaken = 0;
    return made;
}

AVAudioConverter::AVAudioConverter() = default;
AVAudioConverter::~AVAudioConverter() = default;

std::unique_ptr<AVAudioConverter> AVAudioConverter::make(const AVAudioFormat &from, const AVAudioFormat &to,
                                                         std::uint32_t maxInputFrames)
{
    if (from.channelCount() > AVAudioPCMBuffer::maxBuffers || to.channelCount() > AVAudioPCMBuffer::maxBuffers)
        return nullptr;
    auto stream = SwrStream::make(from, to);
    if (stream == nullptr)
        return nullptr;
    std::unique_ptr<AVAudioConverter> converter(new AVAudioConverter);
    converter->m_impl = std::make_unique<Impl>(from, to, std::move(stream));
    const std::uint32_t longest = std::max(maxInputFrames, 1U);
    if (!converter->m_impl->makeRoomFor(longest))
        return nullptr;
    converter->m_impl->warmUp(longest);
    return converter;
}

const AVAudioFormat &AVAudioConverter::inputFormat() const
{
    return m_impl->from;
}

const AVAudioFormat &AVAudioConverter::outputFormat() const
{
    return m_impl->to;
}

AVAudioConverterOutputStatus AVAudioConverter::convertToBuffer(AVAudioPCMBuffer &output, Error *error,
                                                               AVAudioConverterInputBlock input)
{
    const auto fail = [&](OSStatus status, const char *reason) {
        output.setFrameLength(0);
        if (error != nullptr)
            *error = Error{NSOSStatusErrorDomain, status, reason};
        return AVAudioConverterOutputStatus::error;
    };
    output.setFrameLength(0);
    if (output.format() != m_impl->to)
        return fail(-EINVAL, "The buffer is not in the converter's output format.");
    for (;;) {
        m_impl->takeReady(output);
        if (output.frameLength() == output.frameCapacity())
            return AVAudioConverterOutputStatus::haveData;
        auto status = AVAudioConverterInputStatus::haveData;
        const AVAudioPCMBuffer *block = input(m_impl->inputFor(output.frameCapacity() - output.frameLength()), status);
        if (status == AVAudioConverterInputStatus::endOfStream)
            return AVAudioConverterOutputStatus::endOfStream;
        if (status != AVAudioConverterInputStatus::haveData || block == nullptr)
            return AVAudioConverterOutputStatus::inputRanDry;
        if (block->format() != m_impl->from)
            return fail(-EINVAL, "The block is not in the converter's input format.");
        if (m_impl->convert(*block) < 0)
            return fail(-ENOMEM, "The block could not be converted.");
    }
}

} // namespace tolvenary
