#include "tests/session/support/x_window.h"

#include "tests/session/support/child_process.h"
#include "tests/session/support/wait_until.h"

#include <sstream>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

/// The first number after `label` in the text.
int numberAfter(const std::string &label, const std::string &text)
{
    const auto at = text.find(label);
    if (at == std::string::npos)
        throw std::runtime_error("no \"" + label + "\" in " + text);
    return std::stoi(text.substr(at + label.size()));
}

std::string windowOf(pid_t process, const std::string &title)
{
    try {
        std::istringstream found(runToEnd({"xdotool", "search", "--all", "--onlyvisible", "--pid",
                                           std::to_string(process), "--name", "^" + title + "$"}));
        std::string id;
        found >> id;
        return id;
    } catch (const std::runtime_error &) {
        return {}; // that is how it says that there is none
    }
}

} // namespace

XWindow::XWindow(pid_t process, const std::string &title)
{
    const auto isThere = [&] {
        m_id = windowOf(process, title);
        return !m_id.empty();
    };
    if (!waitUntil(isThere, 15s))
        throw std::runtime_error("no window called " + title);
}

ScreenBox XWindow::geometry() const
{
    const std::string text = runToEnd({"xwininfo", "-id", m_id});
    return {numberAfter("Absolute upper-left X:", text), numberAfter("Absolute upper-left Y:", text),
            numberAfter("Width:", text), numberAfter("Height:", text)};
}

std::string XWindow::property(const std::string &name) const
{
    const std::string text = runToEnd({"xprop", "-id", m_id, name});
    const auto begin = text.find_first_of("=:", name.size());
    if (begin == std::string::npos || text.find("not found") != std::string::npos ||
        text.ends_with("no such atom on any window.\n"))
        return {};
    const auto first = text.find_first_not_of(" \n", begin + 1);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \n") + 1 - first);
}

bool XWindow::isOnScreen() const
{
    return runToEnd({"xwininfo", "-id", m_id}).find("Map State: IsViewable") != std::string::npos;
}

bool XWindow::isIconic() const
{
    return property("WM_STATE").find("Iconic") != std::string::npos;
}

bool XWindow::isMaximised() const
{
    const std::string states = property("_NET_WM_STATE");
    return states.find("_NET_WM_STATE_MAXIMIZED_HORZ") != std::string::npos &&
           states.find("_NET_WM_STATE_MAXIMIZED_VERT") != std::string::npos;
}

void XWindow::activate() const
{
    runToEnd({"xdotool", "windowactivate", m_id});
}

} // namespace tolvenary::session
