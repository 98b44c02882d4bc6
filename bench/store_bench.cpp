// How long the start waits for the store, by its number of scenes, beside one decryption of the same bytes:
// the files' cipher sets the floor. Compare the rows of one run.
#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/services.h"
#include "scenes/base64.h"
#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "scenes/store_paths.h"

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kScenesOfARoom = 10;
constexpr std::int64_t kRoomsOfACentre = 100;

/// A Documents folder with a store of so many scenes; it goes with the object.
class Store : public platform::UserFolders {
 public:
    explicit Store(std::int64_t scenes) {
        std::string name = (fs::temp_directory_path() / "store-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        root_ = name;
        for (std::int64_t room = 0; room * kScenesOfARoom < scenes; ++room) {
            const std::string centre = "Centro " + std::to_string(room / kRoomsOfACentre);
            fs::create_directories(root_ / scenes::centrePath(centre));
            rooms_.push_back(scenes::roomPath(centre, "Aula " + std::to_string(room)));
        }
    }
    ~Store() override { fs::remove_all(root_); }
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    [[nodiscard]] std::optional<std::string> documents() const override { return root_.string(); }
    [[nodiscard]] std::optional<std::string> downloads() const override { return root_.string(); }

    /// Saving waits for the disk: all but the first room are copies of it.
    void fill() const {
        PresetToFile(rooms_.front(), roomOfTen());
        for (const std::string &room : rooms_) {
            if (room != rooms_.front()) fs::copy_file(root_ / rooms_.front(), root_ / room);
        }
    }

    /// What the cipher makes of all rooms, in one piece.
    [[nodiscard]] std::vector<std::uint8_t> cipherBytes() const {
        std::vector<std::uint8_t> all;
        for (const std::string &room : rooms_) {
            std::ifstream file(root_ / room, std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            const auto bytes = scenes::base64DecodeIgnoringUnknown(text);
            if (!bytes) std::abort();
            all.insert(all.end(), bytes->begin(), bytes->end());
        }
        return all;
    }

 private:
    static std::vector<ManualPreset> roomOfTen() {
        std::vector<ManualPreset> room;
        for (std::int64_t i = 0; i < kScenesOfARoom; ++i) {
            room.push_back({"Pizarra y mesa del profesor " + std::to_string(i), "", "", "", 3600 * i,
                            -3600 * i, 10 * i});
        }
        return room;
    }

    fs::path root_;
    std::vector<std::string> rooms_;
};

std::shared_ptr<Store> storeOf(std::int64_t scenes) {
    auto store = std::make_shared<Store>(scenes);
    platform::Services services = platform::services();
    services.folders = store;
    platform::installServices(std::move(services));
    store->fill();
    return store;
}

void BM_ReadStore(benchmark::State &state) {
    const auto store = storeOf(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(obtenerPresets());
}

void BM_DecryptStore(benchmark::State &state) {
    const auto cipher = storeOf(state.range(0))->cipherBytes();
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
BENCHMARK(BM_ReadStore)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecryptStore)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
