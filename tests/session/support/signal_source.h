#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace tolvenary::session
{

/// An endless sound, computed sample by sample so that a test knows it exactly.
class SignalSource
{
  public:
    virtual ~SignalSource() = default;

    /// Sample number `frame` at `rate` frames a second. real-time
    virtual float at(std::uint64_t frame, double rate) const = 0;

    /// From a description: "silence"; "tone:FREQUENCY:AMPLITUDE"; "clicks:PERIOD:AMPLITUDE" (single frames, one each
    /// PERIOD frames); "steady:LEVEL"; "tune:AMPLITUDE" (a small endless piece of music); "speech:FILE" (a WAV file of
    /// 16-bit mono, again and again). Throws std::runtime_error when it is none of these.
    static std::unique_ptr<SignalSource> parse(const std::string &description);
};

} // namespace tolvenary::session
