#include "tests/window/real/panel_program.h"

#include <stdexcept>

namespace tolvenary::session
{

PanelProgram::PanelProgram(PrivateSession &session, const Variables &variables)
{
    session.environment().set("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    for (const auto &[name, value] : variables)
        session.environment().set(name, value);
    m_process = session.start({TOLVENARY_PROGRAM});
    for (const auto &[name, value] : variables)
        session.environment().unset(name);
    try {
        m_window = std::make_unique<AccessibleWindow>(m_process->pid());
        m_window->await("Start", "push button");
    } catch (const std::exception &error) {
        throw std::runtime_error(std::string(error.what()) + "\n" + messages());
    }
}

unsigned long PanelProgram::counted(const std::string &what) const
{
    const std::string line = m_window->textWith("Running → ");
    const auto at = line.find(what);
    return at == std::string::npos ? 0 : std::stoul(line.substr(at + what.size()));
}

} // namespace tolvenary::session
