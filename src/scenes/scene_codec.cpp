#include "scenes/scene_codec.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "scenes/base64.h"
#include "scenes/scene_json.h"
#include "scenes/scene_layers.h"
#include "scenes/utf8.h"

namespace scenes {
namespace {

constexpr std::int64_t kSceneShift = 11;

DecodedScenes unreadable(std::string error) {
    return {DecodedScenes::Outcome::unreadable, {}, std::move(error)};
}

/// The first piece between "]" that is not empty, with its "]" again; "]" alone when there is none.
std::string upToFirstBracket(std::string json) {
    json.erase(0, json.find_first_not_of(']'));
    json.resize(std::min(json.find(']'), json.size()));
    json += ']';
    return json;
}

/// What the cipher and the shift of characters hide. Takes the text, so that a large file's layers do not
/// stand in memory all at once.
std::string innerText(std::string text) {
    // As large as the text. For texts under 32 bytes that is too small, but only zeros are cut off.
    std::vector<std::uint8_t> buffer(text.size(), 0);
    const std::size_t count = String_decrypt(std::exchange(text, {}), buffer);
    return caesarDataToString(buffer, static_cast<std::int64_t>(count), -kSceneShift);
}

std::string repaired(const std::vector<std::uint8_t> &bytes) {
    return repairUtf8({reinterpret_cast<const char *>(bytes.data()), bytes.size()});
}

}  // namespace

std::optional<std::string> sceneTextFromJson(std::string_view json) {
    const std::string inner = base64Encode(json);
    const auto bytes = caesarDataToData(std::vector<std::uint8_t>(inner.begin(), inner.end()), kSceneShift);
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return std::nullopt;
    return String_encrypt(bytes, static_cast<std::int32_t>(bytes.size()));
}

DecodedScenes decodeSceneText(std::string text) {
    if (!isValidUtf8(text)) return unreadable("the file is not UTF-8 text");
    auto bytes = base64DecodeIgnoringUnknown(innerText(std::move(text)));
    if (!bytes) return {};  // the stop is fatal

    std::string json = repaired(*bytes);
    bytes.reset();
    json = withoutNulls(std::move(json));
    std::string error;
    auto presets = presetsFromJson(upToFirstBracket(std::move(json)), error);
    if (!presets) return unreadable(std::move(error));
    return {DecodedScenes::Outcome::read, *std::move(presets), {}};
}

}  // namespace scenes
