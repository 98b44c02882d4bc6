// How long the start waits for the store, by its number of scenes, beside one decryption of the same bytes:
// the files' cipher sets the floor. And how long a person waits for a room to be on the disk, beside the bare
// way there.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "comparison.h"
#include "scenes/base64.h"
#include "temporary_store.h"

namespace {

namespace fs = std::filesystem;

void BM_ReadStore(benchmark::State &state) {
    bench::storeOf(state.range(0));
    scenes::SceneTree tree;
    for (auto _ : state) tree = obtenerPresets();

    std::size_t count = 0;
    for (const auto &[centre, rooms] : tree)
        for (const auto &[room, presets] : rooms) count += presets.size();
    if (count != static_cast<std::size_t>(state.range(0))) state.SkipWithError("not read");
}

std::string contentOf(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What the cipher makes of all rooms, in one piece.
std::vector<std::uint8_t> cipherBytes(const bench::TemporaryStore &store) {
    std::vector<std::uint8_t> all;
    for (const std::string &room : store.rooms()) {
        const auto bytes = scenes::base64DecodeIgnoringUnknown(contentOf(store.absolute(room)));
        if (!bytes) std::abort();
        all.insert(all.end(), bytes->begin(), bytes->end());
    }
    return all;
}

void BM_DecryptStore(benchmark::State &state) {
    const auto cipher = cipherBytes(bench::storeOf(state.range(0)));
    std::vector<std::uint8_t> plain(cipher.size() + 8);
    const std::vector<std::uint8_t> key(24, 0x5A);
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    for (auto _ : state) {
        int written = 0;
        EVP_DecryptInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr, key.data(), nullptr);
        EVP_CIPHER_CTX_set_padding(context.get(), 0);
        EVP_DecryptUpdate(context.get(), plain.data(), &written, cipher.data(),
                          static_cast<int>(cipher.size()));
        benchmark::DoNotOptimize(plain.data());
        if (written != static_cast<int>(cipher.size())) state.SkipWithError("not decrypted");
    }
}

void ofStores(benchmark::internal::Benchmark *rounds) {
    rounds->Arg(10)->Arg(1000)->Arg(100000)->MinTime(0.02)->Repetitions(9);
}
BENCHMARK(BM_ReadStore)->Apply(ofStores);
BENCHMARK(BM_DecryptStore)->Apply(ofStores);

void BM_SaveRoom(benchmark::State &state) {
    const bench::TemporaryStore &store = bench::storeOf(bench::kScenesOfARoom);
    const auto room = bench::roomOf(bench::kScenesOfARoom);
    for (auto _ : state) PresetToFile(store.rooms().front(), room);
}

/// The same end, power failures included: the content is on the disk before the name, and the name at the
/// end.
bool saveBare(const fs::path &folder, const fs::path &path, const std::string &text) {
    const fs::path temporary = folder / "new";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    bool done = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    done = ::fsync(file) == 0 && done;
    done = ::close(file) == 0 && ::rename(temporary.c_str(), path.c_str()) == 0 && done;
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    done = ::fsync(handle) == 0 && done;
    return ::close(handle) == 0 && done;
}

void BM_BareSave(benchmark::State &state) {
    const bench::TemporaryStore &store = bench::storeOf(bench::kScenesOfARoom);
    const fs::path path = store.absolute(store.rooms().front());
    const std::string text = contentOf(path);
    for (auto _ : state)
        if (!saveBare(path.parent_path(), path, text)) state.SkipWithError("not saved");
}
BENCHMARK(BM_SaveRoom)->Apply(bench::oneByOne);
BENCHMARK(BM_BareSave)->Apply(bench::oneByOne);

}  // namespace
