// What a large file costs in memory, also one that nobody would save: beside its bytes.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "process_memory.h"
#include "scenes/scene_codec.h"
#include "scenes/scene_layers.h"
#include "scenes/scene_reading.h"
#include "temporary_store.h"

namespace {

namespace fs = std::filesystem;

/// So many bytes of JSON are 50 to 60 MiB in a file; more than 64 MiB are not read.
constexpr std::size_t kLargestText = std::size_t{28} << 20;

enum Content : std::int64_t { manyScenes, nulls, invalidBytes, openText, nothingToShift, letters };

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
        case nulls:
            return "[" + repeated("null,") + "0]";
        case openText:
            return R"([{"Name":")" + std::string(kLargestText, '\xFF');
        default:
            return std::string(kLargestText, '\xFF');
    }
}

/// The text of the file.
std::optional<std::string> textOf(std::int64_t content) {
    switch (content) {
        case nothingToShift: {  // each becomes a character of three bytes
            const std::vector<std::uint8_t> inner(kLargestText / 3 * 4, 5);
            return String_encrypt(inner, static_cast<std::int32_t>(inner.size()));
        }
        case letters:  // as somebody without the key may write it
            return std::string(kLargestText * 2, 'A');
        default:
            return scenes::sceneTextFromJson(jsonOf(content));
    }
}

/// What `work` needs more than there was, at its height.
template <typename Work>
void measureMemory(benchmark::State &state, Work work) {
    for (auto _ : state) {
        state.PauseTiming();
        ::malloc_trim(0);
        // From here on the height is what there is now.
        if (!(std::ofstream("/proc/self/clear_refs") << 5).flush()) std::abort();
        const double before = bench::megabytes("self", "VmRSS:");
        state.ResumeTiming();
        work();
        state.PauseTiming();
        state.counters["MB"] = bench::megabytes("self", "VmHWM:") - before;
        state.ResumeTiming();
    }
}

fs::path largeFile(std::int64_t content) {
    fs::path path = bench::storeOf(0).home() / "large";
    const auto text = textOf(content);
    if (!text) std::abort();
    std::ofstream file(path, std::ios::binary);
    if (!(file << *text).flush()) std::abort();
    return path;
}

void BM_ReadLargeFile(benchmark::State &state) {
    const fs::path file = largeFile(state.range(0));
    scenes::SceneFile read;
    measureMemory(state, [&] { read = scenes::readSceneFile(file); });
    using Outcome = scenes::SceneFile::Outcome;
    const bool isAsExpected = state.range(0) == manyScenes
                                  ? !read.presets.empty()
                                  : read.outcome == Outcome::noScenes || read.outcome == Outcome::fatal;
    if (!isAsExpected) state.SkipWithError(read.error.c_str());
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
    rounds->DenseRange(manyScenes, letters)->Iterations(1)->Repetitions(3);
}
BENCHMARK(BM_ReadLargeFile)->Apply(ofEachContent);
BENCHMARK(BM_LoadLargeFile)->Apply(ofEachContent);

}  // namespace
