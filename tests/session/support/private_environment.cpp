#include "tests/session/support/private_environment.h"

#include <cstdlib>

namespace tolvenary::session
{

namespace fs = std::filesystem;

PrivateEnvironment::PrivateEnvironment()
{
    const std::map<std::string, fs::path> directories = {
        {"HOME", root() / "home"},          {"XDG_RUNTIME_DIR", runtime()},       {"XDG_CONFIG_HOME", configuration()},
        {"XDG_DATA_HOME", root() / "data"}, {"XDG_STATE_HOME", root() / "state"}, {"XDG_CACHE_HOME", root() / "cache"},
    };
    for (const auto &[name, directory] : directories) {
        fs::create_directory(directory);
        fs::permissions(directory, fs::perms::owner_all);
        set(name, directory);
    }
    for (const char *name : {"PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "PIPEWIRE_CONFIG_DIR", "PIPEWIRE_PROPS",
                             "PIPEWIRE_LATENCY", "PIPEWIRE_QUANTUM", "PULSE_SERVER", "PULSE_RUNTIME_PATH",
                             "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY"})
        unset(name);
    // Settings stay in the process: a service that stores them would end its clients when the private bus ends.
    set("GSETTINGS_BACKEND", "memory");
    // Programs talk to each other in English here, whoever runs the tests.
    set("LC_ALL", "C.UTF-8");
}

PrivateEnvironment::~PrivateEnvironment()
{
    for (const auto &[name, value] : m_before) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
}

void PrivateEnvironment::set(const std::string &name, const std::string &value)
{
    remember(name);
    setenv(name.c_str(), value.c_str(), 1);
}

void PrivateEnvironment::unset(const std::string &name)
{
    remember(name);
    unsetenv(name.c_str());
}

void PrivateEnvironment::remember(const std::string &name)
{
    const char *value = getenv(name.c_str());
    m_before.try_emplace(name, value != nullptr ? std::optional<std::string>(value) : std::nullopt);
}

} // namespace tolvenary::session
