#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/manual_preset.h"

/// The whole stack of a scene file, in memory: from the JSON text to the file's text and back.
namespace scenes {

/// The text of a scene file around `json`. Nothing when it cannot be encrypted.
[[nodiscard]] std::optional<std::string> sceneTextFromJson(std::string_view json);

/// What the text of a scene file turned out to be.
struct DecodedScenes {
    enum class Outcome {
        read,        ///< `presets` are the file's scenes
        unreadable,  ///< `error` says why, in one line
        fatal        ///< base64 text that does not decrypt to base64 text: a fatal stop
    };
    Outcome outcome = Outcome::fatal;
    std::vector<ManualPreset> presets;
    std::string error;
};

/// Decodes the text of a scene file; takes any bytes. What follows the first "]" of the JSON text is
/// dropped, so a name with that character makes the file unreadable. Wanted. The
/// layers of a large file follow one another in memory: they never stand there all at once.
[[nodiscard]] DecodedScenes decodeSceneText(std::string text);

}  // namespace scenes
