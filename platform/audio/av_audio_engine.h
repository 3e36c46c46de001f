#pragma once

#include "platform/audio/av_audio_io_nodes.h"
#include "platform/error.h"

#include <memory>
#include <vector>

namespace tolvenary
{

/// A graph of nodes between an input and an output of the system. Thread: main.
///
/// reset() makes it an empty, stopped graph without input or output unit; its former nodes may be attached again, and
/// players among them are stopped and empty. start() runs it; stop() returns when no callback is running.
class AVAudioEngine
{
  public:
    explicit AVAudioEngine(AudioUnits &units);
    ~AVAudioEngine();
    AVAudioEngine(const AVAudioEngine &) = delete;
    AVAudioEngine &operator=(const AVAudioEngine &) = delete;

    /// Made on first use, with a new unit; never fails, but the node's unit may be missing.
    AVAudioOutputNode &outputNode();
    AVAudioInputNode &inputNode();

    /// The engine refers to the node until reset().
    void attachNode(AVAudioNode &node);
    /// The engine owns the node until reset().
    AVAudioNode &attachNode(std::shared_ptr<AVAudioNode> node);

    void connect(AVAudioNode &source, AVAudioNode &destination, const AVAudioFormat &format);
    void connect(AVAudioNode &source, AVAudioNode &destination, std::uint32_t fromBus, std::uint32_t toBus,
                 const AVAudioFormat &format);

    /// Allocates all memory that the run will need.
    void prepare();
    /// Starts the units; a failure carries the unit's status (NSOSStatusErrorDomain) and leaves the engine stopped.
    Result<void> startAndReturnError();
    void stop();
    void reset();
    bool isRunning() const;

  private:
    Result<void> startInput();
    Result<void> startOutput();

    AudioUnits &m_units;
    std::unique_ptr<AVAudioOutputNode> m_output;
    std::unique_ptr<AVAudioInputNode> m_input;
    std::vector<AVAudioNode *> m_attached;
    std::vector<std::shared_ptr<AVAudioNode>> m_owned;
    bool m_running = false;
};

} // namespace tolvenary
