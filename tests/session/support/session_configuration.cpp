#include "tests/session/support/session_configuration.h"

#include "tests/session/support/child_process.h"

#include <fstream>
#include <string>

namespace tolvenary::session
{

namespace fs = std::filesystem;

namespace
{

void write(const fs::path &file, const std::string &text)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

/// A virtual machine's own least quantum is lifted too: some tests ask for 64 frames.
std::string clockSettings(const SessionConfiguration &configuration)
{
    const std::string rate = std::to_string(configuration.rate);
    const std::string quantum = std::to_string(configuration.quantum);
    return "context.properties = {\n"
           "  default.clock.rate = " +
           rate +
           "\n"
           "  default.clock.allowed-rates = [ " +
           rate +
           " ]\n"
           "  default.clock.quantum = " +
           quantum +
           "\n"
           "  default.clock.min-quantum = 32\n"
           "  vm.overrides = { default.clock.min-quantum = 32 }\n"
           "}\n";
}

std::string speakers(const std::string &channels)
{
    return R"(context.objects = [
  { factory = adapter
    args = {
      factory.name = support.null-audio-sink
      node.name = "speakers"
      node.description = "Speakers"
      media.class = Audio/Sink
      audio.position = [ )" +
           channels + R"( ]
      priority.session = 2000
      priority.driver = 1009
      object.linger = true
    }
  }
]
)";
}

constexpr const char *noHardware04 = "alsa_monitor.enabled = false\n"
                                     "v4l2_monitor.enabled = false\n"
                                     "libcamera_monitor.enabled = false\n";
constexpr const char *noBluetooth04 = "bluez_monitor.enabled = false\n"
                                      "if bluez_midi_monitor then bluez_midi_monitor.enabled = false end\n";
constexpr const char *noHardware05 = "wireplumber.profiles = { main = {\n"
                                     "  hardware.audio = disabled\n"
                                     "  hardware.bluetooth = disabled\n"
                                     "  hardware.video-capture = disabled\n"
                                     "} }\n";

void writeAccessRule(const AccessRule &rule, const fs::path &wireplumber)
{
    write(wireplumber / "main.lua.d/60-access-rule.lua", "table.insert(default_access.rules, {\n"
                                                         "  matches = { { { \"" +
                                                             rule.property + "\", \"=\", \"" + rule.value +
                                                             "\" } } },\n"
                                                             "  default_permissions = \"" +
                                                             rule.permissions +
                                                             "\",\n"
                                                             "})\n");
    write(wireplumber / "wireplumber.conf.d/60-access-rule.conf",
          "access.rules = [ {\n"
          "  matches = [ { " +
              rule.property + " = \"" + rule.value +
              "\" } ]\n"
              "  actions = { update-props = { default_permissions = \"" +
              rule.permissions +
              "\" } }\n"
              "} ]\n");
}

/// What the machine's administrator has set for all users, our device perhaps: PipeWire reads of files with one name
/// the user's alone.
void hideMachinesSettings(const fs::path &pipewire)
{
    for (const char *folder : {"client.conf.d", "client-rt.conf.d", "pipewire.conf.d", "pipewire-pulse.conf.d"}) {
        std::error_code notThere;
        for (const fs::directory_entry &entry : fs::directory_iterator(fs::path("/etc/pipewire") / folder, notThere))
            write(pipewire / folder / entry.path().filename(), "# in place of the machine's\n");
    }
}

/// Later servers have a property for it. For 0.3 it is the server's own settings but for that one line: what is set
/// beside them can only add to them.
void leaveOutProfiler(const fs::path &pipewire)
{
    write(pipewire / "pipewire.conf.d/30-profiler.conf", "context.properties = { module.profiler = false }\n");
    std::ifstream settings("/usr/share/pipewire/pipewire.conf");
    std::string kept;
    for (std::string line; std::getline(settings, line);) {
        if (!line.ends_with("libpipewire-module-profiler }"))
            kept += line + '\n';
    }
    write(pipewire / "pipewire.conf", kept);
}

/// Into the configuration directory that the environment names.
void installDevice(const std::string &installer, const char *channels)
{
    const std::string own = std::string(TOLVENARY_SOURCE_DIR) + "/packaging/blackhole/tolvenary-blackhole";
    runToEnd({installer.empty() ? own : installer, "install", channels});
}

} // namespace

void writeConfiguration(const SessionConfiguration &configuration, const fs::path &directory)
{
    hideMachinesSettings(directory / "pipewire");
    if (!configuration.profiler)
        leaveOutProfiler(directory / "pipewire");
    const fs::path pipewire = directory / "pipewire/pipewire.conf.d";
    write(pipewire / "10-clock.conf", clockSettings(configuration));
    if (!configuration.speakers.empty())
        write(pipewire / "20-speakers.conf", speakers(configuration.speakers));
    if (configuration.shippedDevice)
        installDevice(configuration.installer, "2ch");
    if (configuration.wideDevice)
        installDevice(configuration.installer, "16ch");

    const fs::path wireplumber = directory / "wireplumber";
    write(wireplumber / "main.lua.d/60-no-hardware.lua", noHardware04);
    write(wireplumber / "bluetooth.lua.d/60-no-hardware.lua", noBluetooth04);
    write(wireplumber / "wireplumber.conf.d/60-no-hardware.conf", noHardware05);
    for (const AccessRule &rule : configuration.accessRules)
        writeAccessRule(rule, wireplumber);
}

} // namespace tolvenary::session
