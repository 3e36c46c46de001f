#pragma once

#include "tests/session/support/private_session.h"

#include <memory>

namespace tolvenary::session
{

/// How a "BlackHole 2ch" may be built on this system.
enum class DeviceKind {
    pair,     ///< a sink and a source around a loopback: what we recommend
    nullSink, ///< a sink; what it hears is at its monitor
    duplex,   ///< a null sink that calls itself a duplex device
};

/// A device that can be unplugged: it is there until the object is gone.
class VirtualDevice
{
  public:
    VirtualDevice(PrivateSession &session, std::unique_ptr<ChildProcess> owner, std::string nodeName);

    const std::string &nodeName() const { return m_nodeName; }
    /// Unplugs it now. Returns when the server has forgotten it.
    void remove();
    ~VirtualDevice() { remove(); }

    VirtualDevice(const VirtualDevice &) = delete;
    VirtualDevice &operator=(const VirtualDevice &) = delete;

  private:
    PrivateSession &m_session;
    std::unique_ptr<ChildProcess> m_owner;
    std::string m_nodeName;
};

/// A device described "BlackHole 2ch", its ports there when this returns.
std::unique_ptr<VirtualDevice> makeBlackHole(PrivateSession &session, DeviceKind kind = DeviceKind::pair,
                                             const std::string &description = "BlackHole 2ch",
                                             const std::string &nodeName = "blackhole_2ch");

/// Where a recorder hears what the device hears: "node:port" for side "FL" or "FR".
std::string deviceMonitor(DeviceKind kind, const std::string &side, const std::string &nodeName = "blackhole_2ch");

/// A microphone: a source with these channels ("MONO", or "FL FR", …), silent until fed. Its priorities are above those
/// of all others, so that it becomes the default source and, as hardware microphones do, drives the graph. (The monitor
/// of a sink that drives is heard one cycle late by everybody: that is no delay of whoever plays into it.)
std::unique_ptr<VirtualDevice> makeMicrophone(PrivateSession &session, const std::string &channels = "MONO",
                                              const std::string &nodeName = "microphone");

/// Links two ports named "node:port", waiting for them to come and for the link to carry sound.
void link(PrivateSession &session, const std::string &output, const std::string &input);

} // namespace tolvenary::session
