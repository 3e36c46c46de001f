#pragma once

#include "platform/audio/av_audio_node.h"
#include "platform/audio_units.h"

#include <algorithm>
#include <cstring>

namespace tolvenary::test
{

/// What the units of a test did and shall do; outlives them.
struct UnitLog {
    OSStatus startStatus = noErr;
    double sampleRate = 48000;
    InputUnitFormat inputFormat{48000, 2};
    int made = 0;
    int alive = 0;
    int starts = 0;
    int stops = 0;
    bool running = false;
};

/// Drives its callback by hand.
class FakeOutputUnit final : public AudioOutputUnit
{
  public:
    explicit FakeOutputUnit(UnitLog &log) : m_log(log)
    {
        ++m_log.made;
        ++m_log.alive;
    }
    ~FakeOutputUnit() override
    {
        --m_log.alive;
        m_log.running = false;
    }

    OSStatus AudioUnitSetProperty(std::uint32_t, std::uint32_t, std::uint32_t, const void *, std::uint32_t) override
    {
        return noErr;
    }
    OSStatus AudioUnitGetProperty(std::uint32_t, std::uint32_t, std::uint32_t, void *, std::uint32_t &) override
    {
        return noErr;
    }
    double sampleRate() override { return m_log.sampleRate; }

    OSStatus AudioOutputUnitStart(RenderCallback render) override
    {
        ++m_log.starts;
        if (m_log.startStatus != noErr)
            return m_log.startStatus;
        m_render = std::move(render);
        m_log.running = true;
        return noErr;
    }
    OSStatus AudioOutputUnitStop() override
    {
        ++m_log.stops;
        m_log.running = false;
        return noErr;
    }

    void cycle(PlanarBlock output) { m_render(output); }

  private:
    UnitLog &m_log;
    RenderCallback m_render;
};

class FakeInputUnit final : public AudioInputUnit
{
  public:
    explicit FakeInputUnit(UnitLog &log) : m_log(log)
    {
        ++m_log.made;
        ++m_log.alive;
    }
    ~FakeInputUnit() override
    {
        --m_log.alive;
        m_log.running = false;
    }

    InputUnitFormat inputFormat() override { return m_log.inputFormat; }

    OSStatus AudioOutputUnitStart(CaptureCallback capture) override
    {
        ++m_log.starts;
        if (m_log.startStatus != noErr)
            return m_log.startStatus;
        m_capture = std::move(capture);
        m_log.running = true;
        return noErr;
    }
    OSStatus AudioOutputUnitStop() override
    {
        ++m_log.stops;
        m_log.running = false;
        return noErr;
    }

    void cycle(const AudioTimeStamp &when, ConstPlanarBlock input) { m_capture(when, input); }

  private:
    UnitLog &m_log;
    CaptureCallback m_capture;
};

class FakeUnits final : public AudioUnits
{
  public:
    std::unique_ptr<AudioOutputUnit> makeOutputUnit() override
    {
        if (!available)
            return nullptr;
        auto unit = std::make_unique<FakeOutputUnit>(output);
        outputUnit = unit.get();
        return unit;
    }
    std::unique_ptr<AudioInputUnit> makeInputUnit() override
    {
        if (!available)
            return nullptr;
        auto unit = std::make_unique<FakeInputUnit>(input);
        inputUnit = unit.get();
        return unit;
    }

    bool available = true;
    UnitLog output;
    UnitLog input;
    FakeOutputUnit *outputUnit = nullptr; ///< the one made last
    FakeInputUnit *inputUnit = nullptr;
};

/// A source that always plays the same value, and counts what it was asked for.
class ConstantNode final : public AVAudioNode
{
  public:
    explicit ConstantNode(float value) : m_value(value) {}

    void render(PlanarBlock output) override
    {
        m_frames += output.frames;
        for (float *const channel : output.channels)
            std::fill_n(channel, output.frames, m_value);
    }
    std::uint64_t frames() const { return m_frames; }

  private:
    float m_value;
    std::uint64_t m_frames = 0;
};

} // namespace tolvenary::test
