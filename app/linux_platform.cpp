#include "app/linux_platform.h"

#include "platform/desktop/desktop_workspace.h"
#include "platform/desktop/portal_capture_device.h"
#include "platform/desktop/qt_timers.h"
#include "platform/desktop/running_applications.h"
#include "platform/desktop/unix_process_info.h"
#include "platform/desktop/x_window_occlusion.h"
#include "platform/pipewire/pipewire_system.h"

namespace tolvenary
{

struct LinuxPlatform::Parts {
    PipeWireSystem pipeWire;
    PortalCaptureDevice captureDevice;
    RunningApplications applications{pipeWire.audioClients()};
    UnixProcessInfo processInfo;
    QtTimers timers;
    DesktopWorkspace workspace;
    XWindowOcclusion windowOcclusion;
};

LinuxPlatform::LinuxPlatform() : m_parts(std::make_unique<Parts>()) {}
LinuxPlatform::~LinuxPlatform() = default;

AudioServer &LinuxPlatform::audioServer()
{
    return m_parts->pipeWire.audioServer();
}
AudioObjectProperties &LinuxPlatform::audioObjectProperties()
{
    return m_parts->pipeWire.audioObjectProperties();
}
ProcessTaps &LinuxPlatform::processTaps()
{
    return m_parts->pipeWire.processTaps();
}
AggregateDevices &LinuxPlatform::aggregateDevices()
{
    return m_parts->pipeWire.aggregateDevices();
}
IOProcs &LinuxPlatform::ioProcs()
{
    return m_parts->pipeWire.ioProcs();
}
AudioUnits &LinuxPlatform::audioUnits()
{
    return m_parts->pipeWire.audioUnits();
}
AVCaptureDevice &LinuxPlatform::captureDevice()
{
    return m_parts->captureDevice;
}
ScreenCaptureAccess &LinuxPlatform::screenCaptureAccess()
{
    return m_parts->pipeWire.screenCaptureAccess();
}
SCShareableContent &LinuxPlatform::shareableContent()
{
    return m_parts->applications;
}
SCStreams &LinuxPlatform::captureStreams()
{
    return m_parts->pipeWire.captureStreams();
}
ProcessInfo &LinuxPlatform::processInfo()
{
    return m_parts->processInfo;
}
Timers &LinuxPlatform::timers()
{
    return m_parts->timers;
}
NSWorkspace &LinuxPlatform::workspace()
{
    return m_parts->workspace;
}
NSWindowOcclusion &LinuxPlatform::windowOcclusion()
{
    return m_parts->windowOcclusion;
}

} // namespace tolvenary
