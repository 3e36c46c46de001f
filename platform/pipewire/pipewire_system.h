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

/// What PipeWire contributes to the platform. The constructor begins to connect and returns at once; while the server
/// is absent it is looked for again and again. Thread: main.
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
