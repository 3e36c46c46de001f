#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace tolvenary::session
{

/// What is left of a sound when its sines are taken out, as shares of the sound's own level (its root mean square).
struct SineResidue {
    double level = 0;
    double noise = 1; ///< root mean square
    double peak = 1;  ///< a click is a peak where there is little noise
};

/// Takes sines of known frequencies out of one window after another, all of one length; so fast that hours can be
/// listened to.
class SineFit
{
  public:
    SineFit(double rate, const std::vector<double> &frequencies, std::size_t frames);

    std::size_t frames() const { return m_frames; }
    /// `window` is of that many frames. Silence is all residue.
    SineResidue residue(std::span<const float> window) const;

  private:
    std::size_t m_frames;
    std::vector<std::vector<double>> m_basis; ///< orthonormal; the first one is constant
};

} // namespace tolvenary::session
