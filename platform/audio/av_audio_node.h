#pragma once

#include "platform/audio/av_audio_format.h"

namespace tolvenary
{

/// A node of an engine's graph. It belongs to whoever made it and must outlive its attachment; nodes are attached and
/// connected on the main thread while the engine is stopped.
class AVAudioNode
{
  public:
    virtual ~AVAudioNode() = default;
    AVAudioNode(const AVAudioNode &) = delete;
    AVAudioNode &operator=(const AVAudioNode &) = delete;

  protected:
    AVAudioNode() = default;

  private:
    friend class AVAudioEngine;

    /// Makes what the run needs: blocks are at most `maxFrames` long. Thread: main, before the first render.
    virtual void prepare(std::uint32_t maxFrames) { static_cast<void>(maxFrames); }

    /// Takes `source` as what comes in at `bus`. Thread: main.
    virtual void setInput(std::uint32_t bus, AVAudioNode *source)
    {
        static_cast<void>(bus);
        static_cast<void>(source);
    }

  public:
    /// Writes the node's output, all of the block. real-time; called by the node that it is connected to.
    virtual void render(PlanarBlock output) { static_cast<void>(output); }
};

} // namespace tolvenary
