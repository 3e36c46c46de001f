#pragma once

#include <cstdlib>

namespace tolvenary::fuzz
{

/// What must hold for any input; if it does not, the fuzzer keeps the input.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace tolvenary::fuzz
