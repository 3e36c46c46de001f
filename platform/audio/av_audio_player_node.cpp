#include "platform/audio/av_audio_player_node.h"

#include "platform/audio/mix_loops.h"
#include "platform/audio/planar.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

/// Several cycles' worth of buffers even with the shortest cycles; more of them waiting would only be delay.
constexpr std::size_t queueLength = 256;

/// A conversion on the way in and one on the way out are each at most two frames off their average.
constexpr std::uint32_t conversionCushion = 4;

bool isPlayable(const AVAudioPCMBuffer &buffer)
{
    const AVAudioFormat &format = buffer.format();
    return format.commonFormat() == AVAudioCommonFormat::pcmFormatFloat32 && !format.isInterleaved() &&
           format.channelCount() == 2;
}

} // namespace

AVAudioPlayerNode::AVAudioPlayerNode() : m_queue(queueLength), m_frames(m_queue.reader()) {}

AVAudioPlayerNode::~AVAudioPlayerNode() = default;

void AVAudioPlayerNode::scheduleBuffer(AVAudioPCMBufferPtr buffer, CompletionHandler completionHandler)
{
    if (buffer == nullptr || !isPlayable(*buffer))
        return;
    m_queue.writer().push({std::move(buffer), std::move(completionHandler)});
}

void AVAudioPlayerNode::play()
{
    m_playing.store(true, std::memory_order_release);
}

void AVAudioPlayerNode::stop()
{
    m_playing.store(false, std::memory_order_release);
}

bool AVAudioPlayerNode::isPlaying() const
{
    return m_playing.load(std::memory_order_acquire);
}

void AVAudioPlayerNode::reset()
{
    m_frames.clear();
    m_guard.setCushion(m_cushion);
    m_toSkip = 0;
    m_silenceFirst = 0;
    m_ranDry = true;
}

void AVAudioPlayerNode::setCushion(std::uint32_t frames)
{
    m_toldCushion = frames;
    m_cushion = frames;
    m_guard.setCushion(frames);
}

void AVAudioPlayerNode::prepare(std::uint32_t, bool rateIsConverted)
{
    m_cushion = std::max(m_toldCushion, rateIsConverted ? conversionCushion : 0);
    m_guard.setCushion(m_cushion);
}

void AVAudioPlayerNode::detached()
{
    stop();
    reset();
}

void AVAudioPlayerNode::render(PlanarBlock output)
{
    if (output.frames == 0)
        return;
    if (!isPlaying())
        return silence(output);

    const std::uint32_t lead = std::min(leadIn(), output.frames);
    m_silenceFirst -= lead;
    PlanarSlice slice(output);
    silence(slice.at(0, lead));
    const PlanarBlock rest = slice.at(lead, output.frames - lead);

    if (m_toSkip > 0 && rest.frames > 0 && m_frames.available() >= rest.frames + m_toSkip)
        playSkipping(rest);
    else if (playQueued(rest) < rest.frames)
        m_ranDry = true;
    m_toSkip = m_guard.observe(m_frames.available() + m_silenceFirst);
}

/// Frames of silence that come before the queue's: a stream that begins, or begins again, is given its cushion.
std::uint32_t AVAudioPlayerNode::leadIn()
{
    if (m_ranDry && m_frames.available() > 0) {
        m_ranDry = false;
        m_silenceFirst = m_cushion;
    }
    return m_silenceFirst;
}

/// Plays what there is, silence behind it, and answers how many frames there were.
std::uint32_t AVAudioPlayerNode::playQueued(PlanarBlock output)
{
    const std::uint32_t frames = std::min(output.frames, m_frames.available());
    copyQueued(output, frames);
    m_frames.drop(frames);
    PlanarSlice slice(output);
    silence(slice.at(frames, output.frames - frames));
    return frames;
}

/// Plays a whole block, in the course of which it moves ahead by what is to be skipped.
void AVAudioPlayerNode::playSkipping(PlanarBlock output)
{
    copyQueued(output, output.frames);
    m_frames.visit(m_toSkip, output.frames,
                   [&](const AVAudioPCMBuffer &buffer, std::uint32_t from, std::uint32_t count, std::uint32_t to) {
                       for (std::uint32_t c = 0; c < output.channels.size(); ++c)
                           crossfadeSamples(output.channels[c] + to, buffer.floatChannel(c) + from, count, to,
                                            output.frames);
                   });
    m_frames.drop(output.frames + m_toSkip);
    m_guard.restart();
}

void AVAudioPlayerNode::copyQueued(PlanarBlock output, std::uint32_t frames) const
{
    m_frames.visit(0, frames,
                   [&](const AVAudioPCMBuffer &buffer, std::uint32_t from, std::uint32_t count, std::uint32_t to) {
                       for (std::uint32_t c = 0; c < output.channels.size(); ++c)
                           std::copy_n(buffer.floatChannel(c) + from, count, output.channels[c] + to);
                   });
}

} // namespace tolvenary
