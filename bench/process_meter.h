#pragma once

#include <sys/types.h>

namespace tolvenary::bench
{

/// Processor time that a process and all its threads have used so far, in seconds; in the kernel's clock ticks.
double processorSeconds(pid_t process);

/// The same to the nanosecond, of the threads that it has now. Of two looks the difference counts, and only where no
/// thread ended in between.
double scheduledSeconds(pid_t process);

/// How often its threads, those it has now, have gone to sleep so far to wait for something.
double wakeUps(pid_t process);

/// Memory that would come free if the process ended: its own pages and its share of those that it has in common with
/// others, in megabytes.
double memoryMegabytes(pid_t process);

/// All that it has in memory, what it shares counted in full, in megabytes.
double residentMegabytes(pid_t process);

} // namespace tolvenary::bench
