#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tolvenary::bench
{

/// One block of stereo in both layouts, so that nobody is charged for bringing it into his own.
struct StereoBlock {
    std::array<std::vector<float>, 2> planar;
    std::vector<float> interleaved;

    std::size_t frames() const { return planar[0].size(); }
};

/// A stream from one rate to another, in stereo.
class Resampler
{
  public:
    virtual ~Resampler() = default;

    /// Takes the whole block and keeps what comes out; answers how many frames that were.
    virtual std::size_t convert(const StereoBlock &block) = 0;
    /// What came out of the left channel the last time.
    virtual std::vector<float> left() const = 0;
};

/// The longest block that convert() is given.
constexpr std::size_t longestBlock = 256;

struct ResamplerKind {
    std::string name;
    std::unique_ptr<Resampler> (*make)(int from, int to);
};

/// Ours first; second what it is made of, called without us; then the others.
const std::vector<ResamplerKind> &resamplers();

} // namespace tolvenary::bench
