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

    /// Makes what the run needs: blocks are mostly at most `maxFrames` long. With `rateIsConverted` the graph does not
    /// run at the system's rate, so that supply and demand may differ by a frame or two in a cycle. Thread: main,
    /// before the first render.
    virtual void prepare(std::uint32_t maxFrames, bool rateIsConverted)
    {
        static_cast<void>(maxFrames);
        static_cast<void>(rateIsConverted);
    }

    /// Takes `source` as what comes in at `bus`; it lives until detached(). Thread: main.
    virtual void setInput(std::uint32_t bus, AVAudioNode *source)
    {
        static_cast<void>(bus);
        static_cast<void>(source);
    }

    /// When the graph is taken apart: forgets the inputs and drops what it holds. Thread: main, after the last render.
    virtual void detached() {}

  public:
    /// Writes the node's output, all of the block. real-time; called by the node that it is connected to.
    virtual void render(PlanarBlock output) { static_cast<void>(output); }
};

} // namespace tolvenary
