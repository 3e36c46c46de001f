// What happens in a cycle, piece by piece.

#include "bench/kernels.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main()
{
    using namespace tolvenary::bench;
    try {
        Duels duels;
        benchLoops(duels);
        benchGraph(duels);
        benchTap(duels);
        benchQueue(duels);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
