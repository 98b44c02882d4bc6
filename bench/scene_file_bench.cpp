// Decoding of one room's file, by its number of scenes: start-up reads every room of the store.
#include <benchmark/benchmark.h>

#include "scenes/scene_codec.h"
#include "scenes/scene_json.h"

namespace {

void BM_DecodeRoom(benchmark::State &state) {
    std::vector<ManualPreset> room(static_cast<std::size_t>(state.range(0)));
    for (auto &scene : room) scene.Name = "Pizarra y mesa del profesor";
    std::string error;
    const auto json = scenes::jsonFromPresets(room, error);
    const auto text = scenes::sceneTextFromJson(*json);
    for (auto _ : state) benchmark::DoNotOptimize(scenes::decodeSceneText(*text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}
BENCHMARK(BM_DecodeRoom)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace
