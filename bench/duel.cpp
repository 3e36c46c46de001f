#include "bench/duel.h"

#include <array>

namespace tolvenary::bench
{

namespace
{

/// Keeps what each round took, and prints nothing.
class Collector : public benchmark::BenchmarkReporter
{
  public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_rounds[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
    }

    const std::vector<double> &roundsOf(const char *name) { return m_rounds[name]; }

  private:
    std::map<std::string, std::vector<double>> m_rounds;
};

} // namespace

Duels::Duels()
{
    std::string program = "duel";
    std::string rounds = "--benchmark_repetitions=15";
    std::string inTurns = "--benchmark_enable_random_interleaving=true";
    std::string leastSeconds = "--benchmark_min_time=0.002";
    std::array<char *, 5> arguments{program.data(), rounds.data(), inTurns.data(), leastSeconds.data(), nullptr};
    int count = static_cast<int>(arguments.size()) - 1;
    benchmark::Initialize(&count, arguments.data());
}

void Duels::run(Row row)
{
    progress(row.part + ": " + row.work);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, ".*");
    benchmark::ClearRegisteredBenchmarks();
    row.unit = "ns";
    row.ours = collector.roundsOf("ours");
    row.theirs = collector.roundsOf("theirs");
    report(row);
}

} // namespace tolvenary::bench
