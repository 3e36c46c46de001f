#include "tests/session/tools/soak_stage.h"

#include "tests/session/support/wait_until.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

constexpr const char *defaultSource = "default.configured.audio.source";
constexpr std::size_t listened = 480000; // frames
constexpr std::size_t listenedToAChange = 48000;
constexpr std::size_t tracksBeforeMix = 4;
/// The least that is lost in a gap is half a microphone, 0.125; the most that the visitor jumps when it is cut off in
/// the middle is 0.075.
constexpr float gapStep = 0.1F;
/// In ten seconds of moving gains the two together reach 0.77 at least, and 0.65 where the hand that moves them is half
/// as fast; the player and the visitor alone reach 0.525.
constexpr float bothTogether = 0.6F;

bool hasBothSources(const Recording &recording)
{
    return std::all_of(recording.tracks.begin() + tracksBeforeMix, recording.tracks.end(), [](const Samples &side) {
        return !side.empty() && *std::max_element(side.begin(), side.end()) > bothTogether;
    });
}

PrivateSession &withUrgentClients(PrivateSession &session)
{
    session.makeClientsUrgent();
    return session;
}

} // namespace

SoakStage::SoakStage(const std::string &program)
    : m_device(makeBlackHole(withUrgentClients(m_session), DeviceKind::nullSink)),
      m_microphone(makeMicrophone(m_session)),
      m_otherMicrophone(makeMicrophone(m_session, "MONO", "other-microphone")),
      m_voice(speakInto(m_session, "microphone", {"MONO=steady:0.25"})),
      m_otherVoice(speakInto(m_session, "other-microphone", {"MONO=steady:0.25"})),
      m_player(playApplication(m_session, {.channels = {"FL=steady:0.3", "FR=steady:0.3"}}))
{
    m_session.chooseDefault(defaultSource, "microphone");
    m_program = m_session.start({program, std::to_string(m_player->pid()), "move"});
    if (!waitUntil([this] { return m_program->output().starts_with("Running"); }, 20s))
        throw std::runtime_error("the mix does not start: " + m_program->output());
    m_recorder = std::make_unique<Recorder>(
        m_session,
        std::vector<std::string>{"microphone:capture_MONO", "other-microphone:capture_MONO",
                                 applicationPort("player", "FL"), applicationPort("player", "FR"),
                                 deviceMonitor(DeviceKind::nullSink, "FL"), deviceMonitor(DeviceKind::nullSink, "FR")});
    m_recorder->record(listenedToAChange); // the beginning has its own tests
}

void SoakStage::visit()
{
    if (m_visitor != nullptr)
        return m_visitor.reset();
    m_visitor = playApplication(
        m_session,
        {.nodeName = "visitor", .applicationName = "Visitor", .channels = {"FL=tone:700:0.05", "FR=tone:900:0.05"}});
}

SteadyGaps SoakStage::judge(const Recording &recording)
{
    m_heardSeconds += static_cast<double>(recording.frames()) / recording.rate;
    return findSteadyGaps(recording, tracksBeforeMix, gapStep);
}

ProcessState SoakStage::stateAlone()
{
    m_visitor.reset();
    if (!m_session.waitForGraph([](const SoundGraph &graph) { return graph.node("visitor") == nullptr; }))
        throw std::runtime_error("the visitor does not go");
    m_recorder->record(listenedToAChange); // the program hears of it a moment later
    return state();
}

SteadyGaps SoakStage::listen()
{
    m_recorder->begin(listened);
    const auto isDone = [this] { return m_recorder->isDone(); };
    do
        visit();
    while (!waitUntil(isDone, 1s));
    const Recording recording = m_recorder->finish();
    if (!hasBothSources(recording))
        ++m_listensWithoutASource;
    return judge(recording);
}

SteadyGaps SoakStage::changeMicrophone()
{
    m_recorder->begin(listenedToAChange);
    m_otherIsDefault = !m_otherIsDefault;
    m_session.chooseDefault(defaultSource, m_otherIsDefault ? "other-microphone" : "microphone");
    return judge(m_recorder->finish());
}

std::optional<double> SoakStage::replugDevice()
{
    m_device.reset();
    if (!m_session.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }))
        throw std::runtime_error("the device does not go");
    m_device = makeBlackHole(m_session, DeviceKind::nullSink);
    m_recorder->begin(2 * listenedToAChange);
    for (std::size_t side = 0; side < 2; ++side)
        m_recorder->connect(tracksBeforeMix + side, deviceMonitor(DeviceKind::nullSink, side == 0 ? "FL" : "FR"));
    const Recording recording = m_recorder->finish();
    const Samples &mix = recording.tracks[tracksBeforeMix];
    const auto heard = std::find_if(mix.begin(), mix.end(), [](float sample) { return std::abs(sample) > gapStep; });
    if (heard == mix.end())
        return std::nullopt;
    return static_cast<double>(heard - mix.begin()) / recording.rate;
}

} // namespace tolvenary::session
