#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace bench {

/// One row of the table: what of ours is measured, and what it is compared with in the same run. A benchmark
/// is named by its function and its argument: "BM_ReadStore/1000".
struct Row {
    std::string what;
    std::string ours;
    std::vector<std::string> against;  ///< their figures are added; none: ours is told alone
    double limit = 0;       ///< for the ratio, or for ours alone, in milliseconds; 0: there is none
    std::string counter{};  ///< what is compared in place of the time
};

/// Several short rounds of a benchmark, of which the fastest counts: other work of the machine lengthens
/// some.
void repeatedly(benchmark::internal::Benchmark *rounds);
/// For what waits for others, a disk or another process: hundreds of rounds of one step each, by the clock.
void oneByOne(benchmark::internal::Benchmark *rounds);

/// Runs the benchmarks, those of several rounds in turns, and prints the rows that were measured. A row above
/// its limit is marked; it is no failure, as the machine may have had other work. `argv` takes the options of
/// Google Benchmark. The exit status: 1 when a benchmark could not be run, and its row is missing.
int runAndCompare(int argc, char **argv, const std::vector<Row> &rows);

}  // namespace bench
