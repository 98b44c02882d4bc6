#pragma once

#include <string>
#include <vector>

#include "scenes/manual_preset.h"

/// Scene files on disk. Paths are relative to the user's Documents folder. Failures are printed on standard
/// output and not returned: the window goes on with what it has in memory.

/// Writes the scenes of one room, atomically: the old file stays whole until the new one is complete. Prints
/// "Error tr " and the reason (a text is not UTF-8), "Error 34 " (no Documents folder), or "cant write..."
/// and, on a second line, the reason, which may be that guardedFile() refuses the path. When the scenes
/// cannot be encrypted, nothing is written and nothing printed. Blocks until the text is on disk.
void PresetToFile(const std::string &Path, const std::vector<ManualPreset> &arrayPresets);

/// Reads the scenes of one room. Links are followed, out of the store too. What is not a scene file, not a
/// regular file or larger than 64 MiB gives an empty list and a line "cant read… " with the reason. Without a
/// Documents folder the list is empty and nothing is printed. Base64 text that does not decrypt to base64
/// text is a fatal stop; so most damaged files end the program.
[[nodiscard]] std::vector<ManualPreset> FileToPreset(const std::string &Path);
