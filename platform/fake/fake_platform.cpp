#include "platform/fake/fake_platform.h"

namespace tolvenary
{

bool FakePlatform::holdsAnything() const
{
    return m_processTaps.alive() > 0 || m_aggregateDevices.alive() > 0 || m_ioProcs.alive() > 0 ||
           m_audioUnits.alive() > 0 || m_captureStreams.alive() > 0 || m_timers.scheduled() > 0;
}

} // namespace tolvenary
