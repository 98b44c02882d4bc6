// The camera library's texts beside the C library's reading and writing of the same ones.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "comparison.h"
#include "uvc/uvc_value.h"

namespace {

constexpr const char *kType = "{S4 pan; S4 tilt}";
constexpr const char *kPosition = "{-28862,18598}";
constexpr const char *kFractions = "{0.25,0.75}";
using Position = std::array<std::int32_t, 2>;

void BM_ReadTypeDescription(benchmark::State &state) {
    for (auto _ : state) {
        auto type = UVCType::uvcTypeWithCString(kType);
        benchmark::DoNotOptimize(type);
    }
}

void BM_SscanfTypeDescription(benchmark::State &state) {
    for (auto _ : state) {
        std::array<char, 16> first{};
        std::array<char, 16> second{};
        std::array<int, 2> sizes{};
        std::array<char, 2> signs{};
        if (std::sscanf(kType, "{%c%d %15[a-z-]; %c%d %15[a-z-]}", &signs[0], &sizes[0], first.data(),
                        &signs[1], &sizes[1], second.data()) != 6)
            state.SkipWithError("not read");
        benchmark::DoNotOptimize(second);
    }
}

std::shared_ptr<UVCValue> position(std::int32_t pan, std::int32_t tilt) {
    auto value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(kType));
    const Position both{pan, tilt};
    std::memcpy(value->valuePtr(), both.data(), sizeof both);
    return value;
}

void read(benchmark::State &state, const char *text) {
    const auto value = position(0, 0);
    const auto minimum = position(-522000, -324000);
    const auto maximum = position(522000, 324000);
    for (auto _ : state)
        if (!value->scanCString(text, 0, minimum.get(), maximum.get())) state.SkipWithError("not read");
}

void BM_ReadValue(benchmark::State &state) {
    read(state, kPosition);
}

void BM_SscanfValue(benchmark::State &state) {
    for (auto _ : state) {
        Position both{};
        if (std::sscanf(kPosition, "{%i,%i}", &both[0], &both[1]) != 2) state.SkipWithError("not read");
        benchmark::DoNotOptimize(both);
    }
}

void BM_ReadFractions(benchmark::State &state) {
    read(state, kFractions);
}

void BM_SscanfFractions(benchmark::State &state) {
    for (auto _ : state) {
        std::array<float, 2> both{};
        if (std::sscanf(kFractions, "{%g,%g}", &both[0], &both[1]) != 2) state.SkipWithError("not read");
        benchmark::DoNotOptimize(both);
    }
}

void BM_WriteValue(benchmark::State &state) {
    const auto value = position(-28862, 18598);
    for (auto _ : state) benchmark::DoNotOptimize(value->stringValue());
}

void BM_SnprintfValue(benchmark::State &state) {
    Position both{-28862, 18598};
    for (auto _ : state) {
        benchmark::DoNotOptimize(both);
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "{pan=%d,tilt=%d}", both[0], both[1]);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_ReadTypeDescription)->Apply(bench::repeatedly);
BENCHMARK(BM_SscanfTypeDescription)->Apply(bench::repeatedly);
BENCHMARK(BM_ReadValue)->Apply(bench::repeatedly);
BENCHMARK(BM_SscanfValue)->Apply(bench::repeatedly);
BENCHMARK(BM_ReadFractions)->Apply(bench::repeatedly);
BENCHMARK(BM_SscanfFractions)->Apply(bench::repeatedly);
BENCHMARK(BM_WriteValue)->Apply(bench::repeatedly);
BENCHMARK(BM_SnprintfValue)->Apply(bench::repeatedly);

}  // namespace
