#include "scenes/scene_codec.h"

#include <algorithm>
#include <cstdint>
#include <limits>

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
std::string upToFirstBracket(std::string_view json) {
    json.remove_prefix(std::min(json.find_first_not_of(']'), json.size()));
    return std::string(json.substr(0, json.find(']'))) + "]";
}

}  // namespace

std::optional<std::string> sceneTextFromJson(std::string_view json) {
    const std::string inner = base64Encode(json);
    const auto bytes = caesarDataToData(std::vector<std::uint8_t>(inner.begin(), inner.end()), kSceneShift);
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return std::nullopt;
    return String_encrypt(bytes, static_cast<std::int32_t>(bytes.size()));
}

DecodedScenes decodeSceneText(std::string_view text) {
    if (!isValidUtf8(text)) return unreadable("the file is not UTF-8 text");

    // As large as the text. For texts under 32 bytes that is too small, but only zeros are cut off.
    std::vector<std::uint8_t> buffer(text.size(), 0);
    const std::size_t count = String_decrypt(text, buffer);
    const std::string inner = caesarDataToString(buffer, static_cast<std::int64_t>(count), -kSceneShift);
    const auto json = base64DecodeIgnoringUnknown(inner);
    if (!json) return {};

    const std::string repaired = repairUtf8(std::string(json->begin(), json->end()));
    std::string error;
    auto presets = presetsFromJson(upToFirstBracket(withoutNulls(repaired)), error);
    if (!presets) return unreadable(std::move(error));
    return {DecodedScenes::Outcome::read, *std::move(presets), {}};
}

}  // namespace scenes
