// Scanning a position, and a fraction of the range, into a control's value. The scanner sets a neutral locale
// each time.
#include <benchmark/benchmark.h>

#include "uvc/uvc_value.h"

namespace {

void BM_ScanPosition(benchmark::State &state) {
    const auto value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString("{S4 pan; S4 tilt}"));
    for (auto _ : state) benchmark::DoNotOptimize(value->scanCString("{-28862,18598}", 0));
}
BENCHMARK(BM_ScanPosition);

void BM_ParseTypeDescription(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(UVCType::uvcTypeWithCString("{S4 pan; S4 tilt}"));
}
BENCHMARK(BM_ParseTypeDescription);

}  // namespace
