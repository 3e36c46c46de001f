#pragma once

#include <cstddef>

namespace tolvenary::bench
{

/// The same loads and stores as a loop of the mix, and nothing else: the least that such a loop can cost. One a kind of
/// processor, since wider vectors are fewer loads and stores. Frames come in multiples of 32.
struct Traffic {
    void (*oneToOne)(float *to, const float *from, std::size_t frames);
    void (*twoToOne)(float *to, const float *a, const float *b, std::size_t frames);
};

const Traffic &plainTraffic();
/// Only for a processor with AVX2; null where there is no such processor.
const Traffic *wideTraffic();

} // namespace tolvenary::bench
