#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "scenes/manual_preset.h"

/// Scene files on disk. Paths are relative to the user's Documents folder. Failures are told on standard
/// output only, never to the caller: the window goes on with what it has in memory.

/// Writes the scenes of one room, atomically: the old file stays whole until the new one is complete. A path
/// that leaves the store's folder is not written. Prints "Error tr " and the reason (a text is not UTF-8),
/// "Error 34 " (no Documents folder), or "cant write..." and, on a second line, the reason. Blocks until the
/// data is on disk.
void PresetToFile(const std::string &Path, const std::vector<ManualPreset> &arrayPresets);

/// Reads the scenes of one room; the file is never changed. An empty list, and a line "cant read… " with the
/// reason, for what is no readable scene file (anything but a regular file of at most 64 MiB included). An
/// empty list without a line when there is no Documents folder. A file that decrypts to no base64 text, as
/// nearly all foreign or damaged ones do, is a fatal stop.
[[nodiscard]] std::vector<ManualPreset> FileToPreset(const std::string &Path);

namespace scenes {

/// One scene file as reading has found it.
struct SceneFile {
    enum class Outcome {
        Read,          ///< `presets` are its scenes
        Inaccessible,  ///< the system does not let it be read; `systemError` (an errno) says why
        NotAFile,      ///< a folder, a pipe, a device
        TooLarge,      ///< more than 64 MiB
        Empty,         ///< no bytes at all
        NoScenes,      ///< its text is not that of a scene file, or a scene in it is incomplete
        Fatal          ///< where FileToPreset() stops the program
    };
    Outcome outcome = Outcome::Fatal;
    std::vector<ManualPreset> presets;
    std::string error;  ///< one line, in English, for the diagnostics; empty when read or fatal
    int systemError = 0;
};

/// Reads the scene file at `path` (not relative to Documents) and never stops the program.
[[nodiscard]] SceneFile readSceneFile(const std::filesystem::path &path);

}  // namespace scenes
