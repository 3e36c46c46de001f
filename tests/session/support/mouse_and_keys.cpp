#include "tests/session/support/mouse_and_keys.h"

#include "tests/session/support/child_process.h"

#include <cstdlib>

namespace tolvenary::session
{

namespace
{

/// The question at the end is answered only after the server has done all that was asked before.
void act(Arguments command)
{
    command.insert(command.begin(), "xdotool");
    command.emplace_back("getmouselocation");
    runToEnd(command);
}

} // namespace

void MouseAndKeys::moveTo(ScreenPoint point) const
{
    act({"mousemove", std::to_string(point.x), std::to_string(point.y)});
}

void MouseAndKeys::press() const
{
    act({"mousedown", "1"});
}

void MouseAndKeys::release() const
{
    act({"mouseup", "1"});
}

void MouseAndKeys::click(ScreenPoint point) const
{
    act({"mousemove", std::to_string(point.x), std::to_string(point.y), "click", "1"});
}

void MouseAndKeys::wheel(ScreenPoint point, int notches) const
{
    const char *button = notches > 0 ? "5" : "4";
    act({"mousemove", std::to_string(point.x), std::to_string(point.y), "click", "--repeat",
         std::to_string(std::abs(notches)), "--delay", "20", button});
}

void MouseAndKeys::keys(const std::vector<std::string> &names) const
{
    Arguments command = {"key", "--clearmodifiers"};
    command.insert(command.end(), names.begin(), names.end());
    act(command);
}

} // namespace tolvenary::session
