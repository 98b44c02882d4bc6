#include "scenes/scene_cipher.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>

namespace scenes {
namespace {

constexpr std::size_t kBlock = 8;

struct FreeContext {
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, FreeContext>;

/// Joined at run time so that the program file does not hold the key in one piece. The key only keeps people
/// from editing the files by hand; it is not a secret.
std::array<std::uint8_t, 24> sceneKey() {
    constexpr std::array<std::uint8_t, 16> first = {ZEL_SCENE_KEY_FIRST};
    constexpr std::array<std::uint8_t, 8> second = {ZEL_SCENE_KEY_SECOND};
    std::array<std::uint8_t, 24> key{};
    std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), key.begin()));
    return key;
}

enum class Direction { decrypt = 0, encrypt = 1 };

/// Absent when OpenSSL refuses.
Context openCipher(Direction direction) {
    Context context(EVP_CIPHER_CTX_new());
    const auto key = sceneKey();
    if (!context || EVP_CipherInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr, key.data(), nullptr,
                                      static_cast<int>(direction)) != 1) {
        return nullptr;
    }
    return context;
}

bool fitsTheCipher(std::size_t length) {
    return length <= static_cast<std::size_t>(std::numeric_limits<int>::max()) - 2 * kBlock;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> encryptBlocks(std::span<const std::uint8_t> plain) {
    if (!fitsTheCipher(plain.size())) return std::nullopt;
    const Context context = openCipher(Direction::encrypt);
    if (!context) return std::nullopt;

    std::vector<std::uint8_t> cipher((plain.size() + kBlock) / kBlock * kBlock);
    int written = 0;
    int last = 0;
    if (EVP_CipherUpdate(context.get(), cipher.data(), &written, plain.data(),
                         static_cast<int>(plain.size())) != 1 ||
        EVP_CipherFinal_ex(context.get(), cipher.data() + written, &last) != 1) {
        return std::nullopt;
    }
    cipher.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(last));
    return cipher;
}

std::vector<std::uint8_t> decryptBlocks(std::span<const std::uint8_t> cipher) {
    std::vector<std::uint8_t> plain((cipher.size() + kBlock) / kBlock * kBlock, 0);
    const std::size_t whole = cipher.size() / kBlock * kBlock;
    if (whole == 0 || !fitsTheCipher(whole)) return plain;

    // OpenSSL's own padding check is off: it would drop the last block of a file whose padding is damaged.
    const Context context = openCipher(Direction::decrypt);
    int written = 0;
    if (!context || EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1 ||
        EVP_CipherUpdate(context.get(), plain.data(), &written, cipher.data(), static_cast<int>(whole)) !=
            1) {
        std::fill(plain.begin(), plain.end(), std::uint8_t{0});
        return plain;
    }
    if (whole != cipher.size()) return plain;

    const std::size_t padding = plain[whole - 1];
    if (padding >= 1 && padding <= kBlock) {
        const auto end = plain.begin() + static_cast<std::ptrdiff_t>(whole);
        std::fill(end - static_cast<std::ptrdiff_t>(padding), end, std::uint8_t{0});
    }
    return plain;
}

}  // namespace scenes
