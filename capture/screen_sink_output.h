#pragma once

#include "platform/capture_stream.h"

namespace tolvenary
{

/// Takes a stream's pictures and throws them away: a stream that captures an application's sound captures its picture,
/// too, and needs an output for it.
class ScreenSinkOutput final : public SCStreamOutput
{
  public:
    void streamDidOutputSampleBufferOfType(SCStream &, const CMSampleBuffer &, SCStreamOutputType) override {}
};

} // namespace tolvenary
