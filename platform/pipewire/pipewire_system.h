#pragma once

#include <memory>

namespace tolvenary
{

class AggregateDevices;
class AudioClients;
class AudioObjectProperties;
class AudioServer;
class AudioUnits;
class IOProcs;
class ProcessTaps;
class SCStreams;
class ScreenCaptureAccess;

/// What PipeWire contributes to the platform. Construction begins to connect and returns at once; a server that is
/// absent, or goes away, is looked for again until it is there. Thread: main.
class PipeWireSystem
{
  public:
    PipeWireSystem();
    ~PipeWireSystem();
    PipeWireSystem(const PipeWireSystem &) = delete;
    PipeWireSystem &operator=(const PipeWireSystem &) = delete;

    AudioServer &audioServer();
    AudioObjectProperties &audioObjectProperties();
    ProcessTaps &processTaps();
    AggregateDevices &aggregateDevices();
    IOProcs &ioProcs();
    AudioUnits &audioUnits();
    ScreenCaptureAccess &screenCaptureAccess();
    AudioClients &audioClients();
    SCStreams &captureStreams();

  private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace tolvenary
