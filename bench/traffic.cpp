#include "bench/traffic.h"

#include <cstdint>
#include <cstring>

namespace tolvenary::bench
{

namespace
{

template <std::size_t lanes> using Vector [[gnu::vector_size(lanes * sizeof(std::uint32_t))]] = std::uint32_t;

constexpr std::size_t batch = 4;

template <std::size_t lanes>
[[gnu::always_inline]] inline void oneToOne(float *to, const float *from, std::size_t frames)
{
    for (std::size_t done = 0; done < frames; done += batch * lanes) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> a;
            std::memcpy(&a, from + done + i * lanes, sizeof a);
            asm volatile("" ::: "memory"); // or the compiler would see that nothing happens
            std::memcpy(to + done + i * lanes, &a, sizeof a);
        }
    }
}

template <std::size_t lanes>
[[gnu::always_inline]] inline void twoToOne(float *to, const float *a, const float *b, std::size_t frames)
{
    for (std::size_t done = 0; done < frames; done += batch * lanes) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> first;
            Vector<lanes> second;
            std::memcpy(&first, a + done + i * lanes, sizeof first);
            std::memcpy(&second, b + done + i * lanes, sizeof second);
            first |= second; // nothing, as arithmetic goes, but both are needed for it
            std::memcpy(to + done + i * lanes, &first, sizeof first);
        }
    }
}

void oneToOnePlain(float *to, const float *from, std::size_t frames)
{
    oneToOne<4>(to, from, frames);
}

void twoToOnePlain(float *to, const float *a, const float *b, std::size_t frames)
{
    twoToOne<4>(to, a, b, frames);
}

#ifdef __x86_64__

[[gnu::target("avx2")]] void oneToOneWide(float *to, const float *from, std::size_t frames)
{
    oneToOne<8>(to, from, frames);
}

[[gnu::target("avx2")]] void twoToOneWide(float *to, const float *a, const float *b, std::size_t frames)
{
    twoToOne<8>(to, a, b, frames);
}

constexpr Traffic wide{oneToOneWide, twoToOneWide};

#endif

constexpr Traffic plain{oneToOnePlain, twoToOnePlain};

} // namespace

const Traffic &plainTraffic()
{
    return plain;
}

const Traffic *wideTraffic()
{
#ifdef __x86_64__
    return &wide;
#else
    return nullptr;
#endif
}

} // namespace tolvenary::bench
