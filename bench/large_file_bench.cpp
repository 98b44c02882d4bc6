// What the largest file that the store takes costs in memory, be it what nobody would save: beside its bytes.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "scenes/scene_codec.h"
#include "scenes/scene_reading.h"
#include "temporary_store.h"

namespace {

namespace fs = std::filesystem;

/// So many bytes of JSON text are 50 to 60 MiB in a file; more than 64 MiB are not read.
constexpr std::size_t kLargestText = std::size_t{28} << 20;

enum Content : std::int64_t { manyScenes, longName, nestedArrays, nulls, invalidBytes };

std::string repeated(std::string_view piece) {
    std::string text;
    while (text.size() + piece.size() <= kLargestText) text += piece;
    return text;
}

std::string jsonOf(std::int64_t content) {
    constexpr std::string_view smallest =
        R"({"Name":"","DS_Path":"","HID_Path":"","HID_SerialNumber":"","Tilt":0,"Pan":0,"Zoom":0},)";
    switch (content) {
        case manyScenes: {
            std::string text = "[" + repeated(smallest);
            text.back() = ']';
            return text;
        }
        case longName:
            return R"([{"Name":")" + std::string(kLargestText, 'a') + R"("}])";
        case nestedArrays:
            return std::string(kLargestText, '[');
        case nulls:
            return "[" + repeated("null,") + "0]";
        default:
            return std::string(kLargestText, '\xFF');
    }
}

/// Kilobytes of a line of this process's status.
double kilobytes(std::string_view line) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double figure = 0;
        if (word == line && status >> figure) return figure;
    }
    return 0;
}

/// What `work` needs more than there was, at its height.
template <typename Work>
void measureMemory(benchmark::State &state, Work work) {
    for (auto _ : state) {
        state.PauseTiming();
        ::malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5;  // the height is what there is now
        const double before = kilobytes("VmRSS:");
        state.ResumeTiming();
        work();
        state.PauseTiming();
        state.counters["MB"] = (kilobytes("VmHWM:") - before) / 1024;
        state.ResumeTiming();
    }
}

fs::path largeFile(std::int64_t content) {
    fs::path path = bench::storeOf(0).home() / "large";
    const auto text = scenes::sceneTextFromJson(jsonOf(content));
    if (!text) std::abort();
    std::ofstream(path, std::ios::binary) << *text;
    return path;
}

void BM_ReadLargeFile(benchmark::State &state) {
    const fs::path file = largeFile(state.range(0));
    bool isRead = false;
    measureMemory(
        state, [&] { isRead = scenes::readSceneFile(file).outcome != scenes::SceneFile::Outcome::tooLarge; });
    if (!isRead) state.SkipWithError("too large");
}

void BM_LoadLargeFile(benchmark::State &state) {
    const fs::path file = largeFile(state.range(0));
    measureMemory(state, [&] {
        std::string bytes(fs::file_size(file), '\0');
        std::ifstream(file, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    });
}

void ofEachContent(benchmark::internal::Benchmark *rounds) {
    rounds->DenseRange(manyScenes, invalidBytes)->Iterations(1)->Repetitions(3);
}
BENCHMARK(BM_ReadLargeFile)->Apply(ofEachContent);
BENCHMARK(BM_LoadLargeFile)->Apply(ofEachContent);

}  // namespace
