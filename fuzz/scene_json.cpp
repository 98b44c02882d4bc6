// The JSON text of a scene file, through all layers: what was read is written and read again as it is.
#include "scenes/scene_json.h"

#include "fuzz/input.h"
#include "scenes/scene_codec.h"

namespace {

using Outcome = scenes::DecodedScenes::Outcome;

bool same(const std::vector<ManualPreset> &one, const std::vector<ManualPreset> &other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const ManualPreset &a, const ManualPreset &b) {
                          return a.Name == b.Name && a.DS_Path == b.DS_Path && a.HID_Path == b.HID_Path &&
                                 a.HID_SerialNumber == b.HID_SerialNumber && a.Tilt == b.Tilt &&
                                 a.Pan == b.Pan && a.Zoom == b.Zoom;
                      });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto text = scenes::sceneTextFromJson({reinterpret_cast<const char *>(data), size});
    fuzz::promise(text.has_value(), "any text has a file");
    const auto read = scenes::decodeSceneText(*text);
    fuzz::promise(read.outcome != Outcome::fatal, "a whole file is no stop");
    if (read.outcome != Outcome::read) return 0;

    std::string error;
    const auto json = scenes::jsonFromPresets(read.presets, error);
    fuzz::promise(json.has_value(), "what was read can be written");
    const auto inMemory = scenes::presetsFromJson(*json, error);
    fuzz::promise(inMemory && same(*inMemory, read.presets), "and reads the same");
    // A name with "]" ends the array, and "null" becomes two quotes: wanted.
    if (json->find(']') != json->size() - 1 || json->find("null") != std::string::npos) return 0;
    const auto again = scenes::decodeSceneText(scenes::sceneTextFromJson(*json).value_or(""));
    fuzz::promise(again.outcome == Outcome::read && same(again.presets, read.presets),
                  "through all layers, too");
    return 0;
}
