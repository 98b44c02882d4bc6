#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/manual_preset.h"

/// The innermost layer of a scene file: a JSON array of scenes, UTF-8.
namespace scenes {

/// Compact JSON, keys in the order of ManualPreset's fields. Nothing when a text is not UTF-8, with the
/// reason in `error`.
[[nodiscard]] std::optional<std::string> jsonFromPresets(const std::vector<ManualPreset> &presets,
                                                         std::string &error);

/// The scenes of a JSON array. All seven keys are required in each, in any order; unknown keys are ignored. A
/// position may be written in any way whose value is a whole number of 64 signed bits (5.0, 1e3). Nothing
/// when anything is amiss, with the reason, one line, in `error`.
[[nodiscard]] std::optional<std::vector<ManualPreset>> presetsFromJson(std::string_view json,
                                                                       std::string &error);

/// `json` with every "null" replaced by two double-quote characters: bare ones outside strings, where they
/// make an empty text of a missing one, escaped ones inside, so that a name with that word leaves the array
/// readable.
[[nodiscard]] std::string withoutNulls(std::string_view json);

}  // namespace scenes
