// The outer text of a scene file: scenes, none with a reason, or the stated stop.
#include "fuzz/input.h"
#include "scenes/scene_codec.h"
#include "scenes/utf8.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using Outcome = scenes::DecodedScenes::Outcome;
    const auto decoded = scenes::decodeSceneText(std::string(data, data + size));
    fuzz::promise(decoded.presets.empty() || decoded.outcome == Outcome::read,
                  "scenes are read or there are none");
    fuzz::promise(decoded.error.empty() == (decoded.outcome != Outcome::unreadable),
                  "a reason for what is unreadable");
    fuzz::promise(decoded.error.size() < 1000 && decoded.error.find('\n') == std::string::npos,
                  "of one line");
    for (const ManualPreset &preset : decoded.presets)
        fuzz::promise(scenes::isValidUtf8(preset.Name), "names are UTF-8");
    return 0;
}
