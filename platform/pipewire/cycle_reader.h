#pragma once

#include "platform/pipewire/graph.h"

#include <map>

struct spa_pod;

namespace tolvenary
{

/// Reads what the server's profiler says of cycles: of each node that followed a driver, whether it had finished when
/// the cycle was over. What cannot be read is left out. Thread: any.
void readFinished(const spa_pod *cycles, std::map<GlobalId, bool> &hasFinished);

} // namespace tolvenary
