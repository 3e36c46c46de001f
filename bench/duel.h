#pragma once

#include "bench/report.h"

#include <benchmark/benchmark.h>

#include <map>

namespace tolvenary::bench
{

/// Runs two ways to do the same work in turns, in random order, and reports the row with the processor time of each
/// round. The clock runs over as many repeats as it takes to be exact; the calls are inlined.
class Duels
{
  public:
    Duels();

    template <typename Ours, typename Theirs> void fight(Row row, Ours ours, Theirs theirs)
    {
        add("ours", ours);
        add("theirs", theirs);
        run(std::move(row));
    }

  private:
    template <typename Work> static void add(const char *name, Work work)
    {
        benchmark::RegisterBenchmark(name, [work](benchmark::State &state) mutable {
            for (auto _ : state) {
                work();
                benchmark::ClobberMemory();
            }
        });
    }

    static void run(Row row);
};

} // namespace tolvenary::bench
