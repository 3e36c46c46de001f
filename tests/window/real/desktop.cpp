#include "tests/window/real/desktop.h"

#include <stdexcept>

namespace tolvenary::session
{

namespace
{

int argumentCount = 1;
char programName[] = "window-test";
char *argumentValues[] = {programName, nullptr};

} // namespace

Desktop::Desktop(const DisplayOptions &display)
    : m_application(argumentCount, argumentValues),
      m_display(m_session, display),
      m_microphone(makeMicrophone(m_session)),
      m_voice(speakInto(m_session, "microphone", {"MONO=tone:997:0.25"})),
      m_music(playApplication(m_session, {.nodeName = "music-box", .applicationName = musicProgram}))
{
    const auto isDefault = [](const SoundGraph &graph) {
        return graph.defaultNode("default.audio.source") == "microphone";
    };
    if (!m_session.waitForGraph(isDefault))
        throw std::runtime_error("the microphone does not become the default source");
}

void Desktop::plugDevice()
{
    if (!m_device)
        m_device = makeBlackHole(m_session, DeviceKind::pair, device);
}

void Desktop::unplugDevice()
{
    m_device.reset();
    if (!m_session.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }))
        throw std::runtime_error("the device does not go away");
}

} // namespace tolvenary::session
