#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvenary::session
{

/// Cuts one client's rights on everything: the client whose `property` has this value gets `permissions`, written as
/// "rwxm" or fewer letters.
struct AccessRule {
    std::string property;
    std::string value;
    std::string permissions;
};

/// How the private sound server is set up.
struct SessionConfiguration {
    int rate = 48000;
    int quantum = 1024;
    bool pulse = false;         ///< with the server that pulse clients talk to
    bool shippedDevice = false; ///< with the "BlackHole 2ch" that the packages carry, installed as a user does it
    bool wideDevice = false;    ///< and with the "BlackHole 16ch" that they carry as an example
    std::string installer = {}; ///< what installs it; the source's own where nothing else is said
    bool profiler = true; ///< tells of cycles who asks, as the server does unless somebody has set it up otherwise
    std::string speakers = "FL FR"; ///< channels of the default sink for applications to play into; empty for none
    std::vector<AccessRule> accessRules = {};
};

/// Writes what PipeWire and WirePlumber (0.4 and 0.5) shall read below the private configuration directory, which the
/// environment names already. No hardware is touched, and WirePlumber remembers nothing.
void writeConfiguration(const SessionConfiguration &configuration, const std::filesystem::path &directory);

} // namespace tolvenary::session
