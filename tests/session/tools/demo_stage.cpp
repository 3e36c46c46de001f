#include "tests/session/tools/demo_stage.h"

#include "tests/session/support/recorder.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/wait_until.h"

#include <stdexcept>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

constexpr const char *musicProgram = "Music Box";
constexpr const char *spoken =
    "Good evening, everybody. You hear me, and you hear the music that plays on this computer, "
    "both in one stream, and none of it comes late.";

void demand(bool condition, const std::string &what)
{
    if (!condition)
        throw std::runtime_error(what);
}

std::string makeSpeech(PrivateSession &session)
{
    const std::string file = session.environment().root() / "speech.wav";
    runToEnd({"espeak-ng", "-v", "en", "-s", "150", "-w", file, spoken}, 20s);
    return file;
}

/// This program draws nothing; it only writes an image.
int &offscreen(int &argc)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return argc;
}

} // namespace

DemoStage::DemoStage(int &argc, char **argv, const std::string &program, const std::string &installer)
    : m_session({.shippedDevice = true, .installer = installer}),
      m_application(offscreen(argc), argv),
      m_microphone(makeMicrophone(m_session)),
      m_voice(speakInto(m_session, "microphone", {"MONO=speech:" + makeSpeech(m_session)})),
      m_music(playApplication(
          m_session,
          {.nodeName = "music-box", .applicationName = musicProgram, .channels = {"FL=tune:0.4", "FR=tune:0.3"}})),
      m_display(m_session)
{
    showWindow(program);
}

void DemoStage::showWindow(const std::string &program)
{
    m_session.environment().set("QT_QPA_PLATFORM", "xcb");
    m_session.environment().set("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    m_session.environment().unset("QT_SCALE_FACTOR");
    m_program = m_session.start({program});
    try {
        m_window = std::make_unique<AccessibleWindow>(m_program->pid());
        m_window->await("Start", "push button");
    } catch (const std::exception &error) {
        throw std::runtime_error(std::string(error.what()) + "\n" + m_program->output());
    }
}

void DemoStage::pick(const std::string &picker, const std::string &row)
{
    m_window->act(m_window->await(picker));
    std::optional<AccessibleElement> entry;
    const auto isOpen = [&] {
        for (const AccessibleElement &element : m_window->elements())
            if (element.name.starts_with(row) && element.role != "combo box" && element.role != "label")
                entry = element;
        return entry.has_value();
    };
    demand(waitUntil(isOpen, 10s), row + " is not offered");
    m_window->act(*entry);
}

void DemoStage::pressStart(float microphoneGain, float applicationGain)
{
    m_window->setValue(m_window->await("Mic gain", "slider"), static_cast<double>(microphoneGain));
    m_window->setValue(m_window->await("App gain", "slider"), static_cast<double>(applicationGain));
    pick("App", musicProgram);
    m_window->act(m_window->await("Start", "push button"));
    const bool counts = waitUntil(
        [&] {
            const std::string line = statusLine();
            return !line.empty() && line.find("mic:0 ") == std::string::npos &&
                   line.find("app:0 ") == std::string::npos;
        },
        15s);
    if (counts)
        return;
    std::string said;
    for (const AccessibleElement &element : m_window->elements())
        said += "\n  " + element.role + ": " + element.name;
    throw std::runtime_error("the mix does not run; the window says:" + said);
}

void DemoStage::pressStop()
{
    m_window->act(m_window->await("Stop", "push button"));
    demand(waitUntil([&] { return m_window->textWith("Stopped") == "Stopped"; }, 10s), "the mix does not stop");
    const auto isGone = [&](const SoundGraph &graph) { return graph.nodesOfProcess(m_program->pid()).empty(); };
    demand(m_session.waitForGraph(isGone), "the stopped program still has nodes in the sound server");
}

Recording DemoStage::record(int seconds)
{
    Recorder recorder(m_session, {"microphone:capture_MONO", applicationPort("music-box", "FL"),
                                  applicationPort("music-box", "FR"), deviceMonitor(DeviceKind::pair, "FL"),
                                  deviceMonitor(DeviceKind::pair, "FR")});
    recorder.record(9600);
    return recorder.record(static_cast<std::size_t>(seconds) * 48000);
}

void DemoStage::takePicture(const std::filesystem::path &file)
{
    const auto elements = m_window->elements();
    for (const AccessibleElement &element : elements) {
        const bool isWindow = element.role == "frame" || element.role == "window";
        if (isWindow && m_display.saveScreenshot(file, m_window->box(element)))
            return;
    }
    throw std::runtime_error("no picture could be taken");
}

DemoGains DemoStage::gains()
{
    return {m_window->value(m_window->await("Mic gain", "slider")),
            m_window->value(m_window->await("App gain", "slider"))};
}

std::string DemoStage::statusLine()
{
    return m_window->textWith("Running → ");
}

} // namespace tolvenary::session
