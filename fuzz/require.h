#pragma once

#include <cstdlib>

namespace tolvenary::fuzz
{

/// What must hold whatever comes in; where it does not, the input is kept.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace tolvenary::fuzz
