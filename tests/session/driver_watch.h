#pragma once

#include <cstdint>
#include <map>

namespace tolvenary::session
{

/// Who drove the cycles that this program's filters ran in. It stands between the program and PipeWire: linking
/// driver_watch.cpp is enough.

/// Cycles until now do not count any more.
void forgetDrivers();
/// Of each filter that has run since, by the server's id of its node: the id of the node whose clock its last cycle
/// had.
std::map<std::uint32_t, std::uint32_t> lastDrivers();

} // namespace tolvenary::session
