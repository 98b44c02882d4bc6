#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "scenes/manual_preset.h"

namespace scenes {

/// One scene file as reading has found it.
struct SceneFile {
    enum class Outcome {
        read,          ///< `presets` are its scenes
        inaccessible,  ///< missing, or the system refuses; `systemError` (an errno) says why
        notAFile,      ///< a folder, a pipe, a device
        tooLarge,      ///< more than 64 MiB
        empty,         ///< no bytes at all
        noScenes,      ///< its text is not that of a scene file, or a scene in it is incomplete
        fatal          ///< where FileToPreset() stops the program
    };
    Outcome outcome = Outcome::fatal;
    std::vector<ManualPreset> presets;
    std::string error;  ///< one line, in English, for the diagnostics; empty when read or fatal
    int systemError = 0;
};

/// Reads the scene file at `path` (not relative to Documents) and never stops the program.
[[nodiscard]] SceneFile readSceneFile(const std::filesystem::path &path);

}  // namespace scenes
