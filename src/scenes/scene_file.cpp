#include "scenes/scene_file.h"

#include <optional>
#include <string_view>
#include <system_error>

#include "platform/fatal.h"
#include "platform/services.h"
#include "scenes/file_replacement.h"
#include "scenes/print_line.h"
#include "scenes/scene_codec.h"
#include "scenes/scene_json.h"
#include "scenes/scene_reading.h"
#include "scenes/store_paths.h"

namespace {

using scenes::printLine;

/// Returns the reason of a failure.
std::optional<std::string> writeText(const std::string &documents, const std::string &relative,
                                     std::string_view text) {
    const scenes::GuardedPath guarded = scenes::guardedFile(documents, relative);
    if (!guarded.refusal.empty()) return guarded.refusal;
    const std::error_code failure = scenes::replaceFile(guarded.path, text);
    if (failure) return guarded.path.string() + ": " + failure.message();
    return std::nullopt;
}

std::vector<ManualPreset> cantRead(const std::string &error) {
    printLine("cant read… " + error);
    return {};
}

}  // namespace

void PresetToFile(const std::string &Path, const std::vector<ManualPreset> &arrayPresets) {
    std::string error;
    const auto json = scenes::jsonFromPresets(arrayPresets, error);
    if (!json) return printLine("Error tr " + error);
    const auto text = scenes::sceneTextFromJson(*json);
    if (!text) return;

    const auto documents = platform::services().folders->documents();
    if (!documents) return printLine("Error 34 ");
    if (const auto failed = writeText(*documents, Path, *text)) {
        printLine("cant write...");
        printLine(*failed);
    }
}

std::vector<ManualPreset> FileToPreset(const std::string &Path) {
    const auto documents = platform::services().folders->documents();
    if (!documents) return {};
    if (Path.find('\0') != std::string::npos) return cantRead("the name holds a zero byte");

    scenes::SceneFile file = scenes::readSceneFile(*documents + "/" + Path);
    if (file.outcome == scenes::SceneFile::Outcome::fatal) platform::fatalStop();
    if (file.outcome != scenes::SceneFile::Outcome::read) return cantRead(file.error);
    return std::move(file.presets);
}
