#include "comparison.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <utility>

namespace bench {
namespace {

/// Why a run came to nothing; null: it did not. Google Benchmark renamed the fields in 1.8.
template <typename Run>
const std::string *failureOf(const Run &run) {
    if constexpr (requires { run.skip_message; }) {
        return run.skipped ? &run.skip_message : nullptr;
    } else {
        return run.error_occurred ? &run.error_message : nullptr;
    }
}

/// Keeps the smallest figure of each benchmark.
class Fastest : public benchmark::BenchmarkReporter {
 public:
    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            std::string name = run.run_name.function_name;
            if (!run.run_name.args.empty()) name.append("/").append(run.run_name.args);
            if (const std::string *failure = failureOf(run)) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), failure->c_str());
                isWhole_ = false;
            } else if (run.run_type == Run::RT_Iteration) {
                // Only what waits for others says that it wants the time of the clock.
                const double time =
                    run.run_name.time_type.empty() ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
                keep({name, {}}, time / benchmark::GetTimeUnitMultiplier(run.time_unit));
                for (const auto &[counter, figure] : run.counters) keep({name, counter}, figure);
            }
        }
    }

    [[nodiscard]] bool isWhole() const { return isWhole_; }

    [[nodiscard]] std::optional<double> figure(const std::string &name, const std::string &counter) const {
        const auto found = figures_.find({name, counter});
        return found == figures_.end() ? std::nullopt : std::optional(found->second);
    }

 private:
    using Key = std::pair<std::string, std::string>;  // benchmark and counter; none: the time

    void keep(const Key &key, double figure) {
        const auto [known, isNew] = figures_.emplace(key, figure);
        if (!isNew) known->second = std::min(known->second, figure);
    }

    std::map<Key, double> figures_;
    bool isWhole_ = true;
};

std::string formatted(const char *format, double number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string told(double figure, const std::string &counter) {
    if (!counter.empty()) return formatted("%.4g ", figure) + counter;
    if (figure < 1e-6) return formatted("%.0f ns", figure * 1e9);
    return figure < 1e-3 ? formatted("%.1f µs", figure * 1e6) : formatted("%.2f ms", figure * 1e3);
}

std::string lineOf(const Row &row, const Fastest &fastest) {
    const auto ours = fastest.figure(row.ours, row.counter);
    double against = 0;
    for (const std::string &name : row.against) {
        const auto figure = fastest.figure(name, row.counter);
        if (!figure) return {};
        against += *figure;
    }
    if (!ours) return {};

    const bool isAlone = row.against.empty();
    const double compared = isAlone ? *ours * 1e3 : *ours / against;
    std::string limit = row.limit == 0 ? "" : formatted("%g", row.limit) + (isAlone ? " ms" : "");
    if (row.limit != 0 && compared > row.limit) limit += " (missed)";
    return "| " + row.what + " | " + told(*ours, row.counter) + " | " +
           (isAlone ? "" : told(against, row.counter)) + " | " +
           (isAlone ? "" : formatted("%.2f", compared)) + " | " + limit + " |\n";
}

}  // namespace

void repeatedly(benchmark::internal::Benchmark *rounds) {
    rounds->MinTime(0.02)->Repetitions(15);
}

void oneByOne(benchmark::internal::Benchmark *rounds) {
    rounds->Iterations(1)->Repetitions(300)->UseRealTime();
}

int runAndCompare(int argc, char **argv, const std::vector<Row> &rows) {
    std::vector<char *> options(argv, argv + argc);
    std::string inTurns = "--benchmark_enable_random_interleaving=true";
    options.insert(options.begin() + 1, inTurns.data());
    int count = static_cast<int>(options.size());
    benchmark::Initialize(&count, options.data());
    if (benchmark::ReportUnrecognizedArguments(count, options.data())) return 64;

    // What the measured code prints is of no interest.
    const int out = ::dup(STDOUT_FILENO);
    if (out < 0 || std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
    Fastest fastest;
    benchmark::RunSpecifiedBenchmarks(&fastest);

    ::dprintf(out, "| what | ours | against | ratio | limit |\n| --- | ---: | ---: | ---: | ---: |\n");
    for (const Row &row : rows) ::dprintf(out, "%s", lineOf(row, fastest).c_str());
    ::close(out);
    return fastest.isWhole() ? 0 : 1;
}

}  // namespace bench
