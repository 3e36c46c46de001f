#pragma once

#include "platform/audio_clients.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/process_table.h"
#include "platform/shareable_content.h"

#include <span>
#include <vector>

namespace tolvenary
{

/// One record for each running application of the desktop, with its main process, sorted by process id; then one for
/// each process that owns a sound stream and belongs to none of them, in the order given. A helper of a listed
/// application adds no record; a different program that was started from one does. No process comes twice. Thread: any.
std::vector<SCRunningApplication> applicationRecords(std::span<const Process> processes,
                                                     std::span<const DesktopEntry> entries,
                                                     std::span<const AudioClient> clients);

} // namespace tolvenary
