#include "tests/ui/support/reference_states.h"

namespace tolvenary::test
{

namespace
{

const QString runningText = QStringLiteral("Running → BlackHole 2ch  mic:96256  app:95232 frames");
const QString failedText = QStringLiteral(
    "Start failed [screen-recording-permission]: Screen Recording permission required for app audio capture. Enable "
    "Tolvenary in System Settings → Privacy & Security → Screen Recording, then quit and relaunch the app. "
    "(Tolvenary 13)");

/// A small generator whose numbers are known everywhere; 32 bits a call.
class SmallGenerator
{
  public:
    explicit SmallGenerator(std::uint32_t seed) : m_seed(seed) {}

    std::uint32_t operator()()
    {
        m_seed += 0x6D2B79F5U;
        std::uint32_t t = (m_seed ^ (m_seed >> 15)) * (m_seed | 1U);
        t = (t + (t ^ (t >> 7)) * (t | 61U)) ^ t;
        return t ^ (t >> 14);
    }

  private:
    std::uint32_t m_seed;
};

} // namespace

std::vector<ReferenceState> referenceStates()
{
    return {{"no-device", {520, 521}}, {"ready", {520, 539}},           {"running", {520, 539}},
            {"failed", {520, 541}},    {"running-900x700", {900, 700}}, {"picker-open", {520, 539}}};
}

std::string testName(const ReferenceState &state)
{
    return QString(state.name).replace('-', '_').toStdString();
}

void PrintTo(const ReferenceState &state, std::ostream *out)
{
    *out << state.name.toStdString();
}

void enter(const ReferenceState &state, PanelStage &stage)
{
    stage.runApplications(
        {"Discord", "Firefox", "mpv", "OBS Studio", "Spotify", "Steam", "Thunderbird", "VLC media player"});
    if (state.name == "no-device")
        return;
    stage.plugIn({"BlackHole 2ch"});
    stage.pick("Firefox");
    if (state.name.startsWith("running")) {
        stage.start();
        stage.coordinator().setStatus(runningText);
    }
    if (state.name == "failed")
        stage.coordinator().setStatus(failedText);
}

std::vector<Star> referenceStars()
{
    SmallGenerator generator(416);
    // A number of 32 bits as a number of the 2^53 steps between the ends.
    return makeStars([&generator] { return std::uint64_t{generator()} << 21; });
}

} // namespace tolvenary::test
