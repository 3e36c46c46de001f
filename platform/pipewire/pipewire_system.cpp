#include "platform/pipewire/pipewire_system.h"

#include "platform/pipewire/pipewire_aggregate_devices.h"
#include "platform/pipewire/pipewire_audio_clients.h"
#include "platform/pipewire/pipewire_audio_server.h"
#include "platform/pipewire/pipewire_audio_units.h"
#include "platform/pipewire/pipewire_io_procs.h"
#include "platform/pipewire/pipewire_object_properties.h"
#include "platform/pipewire/pipewire_process_taps.h"
#include "platform/pipewire/pipewire_screen_capture_access.h"
#include "platform/pipewire/pipewire_streams.h"

#include <pipewire/pipewire.h>

namespace tolvenary
{

namespace
{

// The library counts its users.
struct Library {
    Library() { pw_init(nullptr, nullptr); }
    ~Library() { pw_deinit(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

} // namespace

struct PipeWireSystem::Parts {
    Library library;
    GraphSession session;
    PipeWireAudioServer server{session};
    PipeWireProcessTaps taps{session};
    PipeWireAggregateDevices aggregates{session, taps};
    PipeWireIOProcs procs{aggregates};
    PipeWireObjectProperties properties{session, taps, aggregates};
    PipeWireAudioUnits units{session};
    PipeWireScreenCaptureAccess access{session};
    PipeWireAudioClients clients{session};
    PipeWireStreams streams{session};
};

PipeWireSystem::PipeWireSystem() : m_parts(std::make_unique<Parts>()) {}
PipeWireSystem::~PipeWireSystem() = default;

AudioServer &PipeWireSystem::audioServer()
{
    return m_parts->server;
}
AudioObjectProperties &PipeWireSystem::audioObjectProperties()
{
    return m_parts->properties;
}
ProcessTaps &PipeWireSystem::processTaps()
{
    return m_parts->taps;
}
AggregateDevices &PipeWireSystem::aggregateDevices()
{
    return m_parts->aggregates;
}
IOProcs &PipeWireSystem::ioProcs()
{
    return m_parts->procs;
}
AudioUnits &PipeWireSystem::audioUnits()
{
    return m_parts->units;
}
ScreenCaptureAccess &PipeWireSystem::screenCaptureAccess()
{
    return m_parts->access;
}
AudioClients &PipeWireSystem::audioClients()
{
    return m_parts->clients;
}
SCStreams &PipeWireSystem::captureStreams()
{
    return m_parts->streams;
}

} // namespace tolvenary
