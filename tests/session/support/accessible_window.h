#pragma once

#include "tests/session/support/screen_box.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tolvenary::session
{

/// One element of a window, as assistive software is told of it.
struct AccessibleElement {
    std::string path;
    std::string name;
    std::string role; ///< as AT-SPI calls it: "push button", "combo box", "list item", "label", "slider"
};

/// Reads and operates another process's windows through the desktop's accessibility bus: what a screen-reader user can
/// do, this can do, and nothing else. Needs a session bus, and a QCoreApplication.
class AccessibleWindow
{
  public:
    /// Waits for the process to show up on the bus; throws std::runtime_error when it does not.
    explicit AccessibleWindow(pid_t process);
    ~AccessibleWindow();

    /// All elements, parents before children. An element that vanishes meanwhile is left out.
    std::vector<AccessibleElement> elements() const;

    /// The first element with this name and, if given, role.
    std::optional<AccessibleElement> find(const std::string &name, const std::string &role = {}) const;
    /// The name of the first element whose name holds `part`; empty where there is none. For texts that change.
    std::string textWith(const std::string &part) const;

    /// Waits for the element, and throws std::runtime_error when it does not come.
    AccessibleElement await(const std::string &name, const std::string &role = {}) const;

    /// The name of the innermost element that has the keyboard; empty where none has.
    std::string focus() const;

    /// Presses the element; where that is none of its actions, carries out the first. What that did must be looked for
    /// elsewhere: a true answer proves nothing.
    void act(const AccessibleElement &element) const;
    void setValue(const AccessibleElement &element, double value) const;
    std::string description(const AccessibleElement &element) const;
    double value(const AccessibleElement &element) const;
    ScreenBox box(const AccessibleElement &element) const;

    bool isFocused(const AccessibleElement &element) const;

  private:
    struct Bus;
    std::unique_ptr<Bus> m_bus;
};

} // namespace tolvenary::session
