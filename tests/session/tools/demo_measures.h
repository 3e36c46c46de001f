#pragma once

#include "tests/session/tools/demo_stage.h"

namespace tolvenary::session
{

/// What became of one source in the device.
struct DemoSource {
    std::string name;
    double gain = 0;       ///< as set in the window
    double levelError = 0; ///< decibels between what came out and source times gain
    long delay = 0;        ///< frames
};

struct DemoMeasures {
    std::vector<DemoSource> sources;
    std::size_t gaps = 0;
    std::size_t jumps = 0; ///< of the clock: the machine's, not ours
    double seconds = 0;
    std::uint64_t microphoneFrames = 0; ///< as the status line counts
    std::uint64_t applicationFrames = 0;
};

DemoMeasures measure(const Recording &recording, const DemoGains &gains, const std::string &statusLine);

/// Prints the table; true when all of it is as it should be.
bool report(const DemoMeasures &measures);

/// The device's two tracks as a 32-bit float WAV file.
void saveMix(const Recording &recording, const std::filesystem::path &file);

} // namespace tolvenary::session
