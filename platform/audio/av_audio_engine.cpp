#include "platform/audio/av_audio_engine.h"

#include "platform/audio/av_audio_sink_node.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

/// The longest cycle that sound servers are set to; longer ones are rendered all the same, in parts.
constexpr std::uint32_t longestCycle = 8192;

Result<void> startResult(OSStatus status)
{
    if (status == noErr)
        return {};
    return failure(status, "The audio engine could not start (OSStatus " + std::to_string(status) + ").");
}

} // namespace

AVAudioEngine::AVAudioEngine(AudioUnits &units) : m_units(units) {}

AVAudioEngine::~AVAudioEngine()
{
    reset();
}

AVAudioOutputNode &AVAudioEngine::outputNode()
{
    if (m_output == nullptr)
        m_output.reset(new AVAudioOutputNode(m_units.makeOutputUnit()));
    return *m_output;
}

AVAudioInputNode &AVAudioEngine::inputNode()
{
    if (m_input == nullptr)
        m_input.reset(new AVAudioInputNode(m_units.makeInputUnit()));
    return *m_input;
}

void AVAudioEngine::attachNode(AVAudioNode &node)
{
    if (std::find(m_attached.begin(), m_attached.end(), &node) == m_attached.end())
        m_attached.push_back(&node);
}

AVAudioNode &AVAudioEngine::attachNode(std::shared_ptr<AVAudioNode> node)
{
    attachNode(*node);
    return *m_owned.emplace_back(std::move(node));
}

void AVAudioEngine::connect(AVAudioNode &source, AVAudioNode &destination, const AVAudioFormat &format)
{
    connect(source, destination, 0, 0, format);
}

void AVAudioEngine::connect(AVAudioNode &source, AVAudioNode &destination, std::uint32_t, std::uint32_t toBus,
                            const AVAudioFormat &format)
{
    // An input delivers when the system does; all other sources are asked by their destination.
    if (&source == m_input.get()) {
        if (auto *const sink = dynamic_cast<AVAudioSinkNode *>(&destination))
            m_input->setSink(*sink);
        return;
    }
    if (&destination == m_output.get())
        m_output->setInputFormat(format);
    destination.setInput(toBus, &source);
}

void AVAudioEngine::prepare()
{
    const bool rateIsConverted = m_output != nullptr && m_output->rateIsConverted();
    if (m_output != nullptr)
        static_cast<AVAudioNode &>(*m_output).prepare(longestCycle, rateIsConverted);
    // What the output asks for in one go is longer where its rate is the lower one.
    const std::uint32_t longestRender =
        m_output != nullptr ? std::max(longestCycle, m_output->longestPull()) : longestCycle;
    for (AVAudioNode *const node : m_attached)
        node->prepare(longestRender, rateIsConverted);
}

Result<void> AVAudioEngine::startAndReturnError()
{
    if (m_running)
        return {};
    prepare();
    if (auto started = startInput(); !started)
        return started;
    if (auto started = startOutput(); !started) {
        if (m_input != nullptr)
            m_input->stop();
        return started;
    }
    m_running = true;
    return {};
}

Result<void> AVAudioEngine::startInput()
{
    return m_input == nullptr ? Result<void>() : startResult(m_input->start());
}

Result<void> AVAudioEngine::startOutput()
{
    return m_output == nullptr ? Result<void>() : startResult(m_output->start());
}

void AVAudioEngine::stop()
{
    if (!m_running)
        return;
    if (m_input != nullptr)
        m_input->stop();
    if (m_output != nullptr)
        m_output->stop();
    m_running = false;
}

void AVAudioEngine::reset()
{
    stop();
    // The units go first, so that no callback can meet a node any more.
    m_output.reset();
    m_input.reset();
    for (AVAudioNode *const node : m_attached)
        node->detached();
    m_attached.clear();
    m_owned.clear();
}

bool AVAudioEngine::isRunning() const
{
    return m_running;
}

} // namespace tolvenary
