// bdc-bench: `--table [NAME...]` prints the figures of docs/performance.md; anything else goes to Google Benchmark,
// which knows the same measurements.
#include "bench/Harness.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <string_view>

namespace {

void RunAsBenchmark(benchmark::State& state, const bench::Figure& figure) {
    bench::Sample sample;
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores): the loop variable is the library's idiom
        sample = figure.measure();
        state.SetIterationTime(1.0);
    }
    state.counters["value"] = sample.value;
    state.counters["limit"] = sample.limit;
    state.SetLabel(figure.unit);
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--table")
        return bench::PrintTable({argv + 2, argv + argc});
    if (argc > 1 && std::string_view(argv[1]) == "--list") {
        for (const auto& figure : bench::Figures())
            fmt::print("{}\t{}\n", figure.name, figure.what);
        return 0;
    }
    for (const auto& figure : bench::Figures())
        benchmark::RegisterBenchmark(figure.name.c_str(), RunAsBenchmark, figure)->Iterations(1)->UseManualTime();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
