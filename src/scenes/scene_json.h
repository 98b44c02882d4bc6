#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/manual_preset.h"

/// The innermost layer of a scene file: a JSON array of scenes, UTF-8.
namespace scenes {

/// Compact JSON, keys in the order of ManualPreset's fields, "\/" for a solidus. Nothing when a text is not
/// UTF-8, with the reason in `error`.
[[nodiscard]] std::optional<std::string> jsonFromPresets(const std::vector<ManualPreset> &presets,
                                                         std::string &error);

/// The scenes of a JSON array. All seven keys are required in each, in any order; unknown keys are ignored,
/// and of a repeated key the last value counts. A position is an integer from -2^63 to 2^63 - 1, taken
/// exactly. With a fraction or an exponent (5.0, 1e3) it is first rounded to a double, which must be whole
/// and lie between -2^63 and 2^63, both excluded. Nothing for any other text, nor for one with more than a
/// megabyte between two quotes, with the reason, one line of a usual length, in `error`.
[[nodiscard]] std::optional<std::vector<ManualPreset>> presetsFromJson(std::string_view json,
                                                                       std::string &error);

/// `text` with every "null" replaced by two double-quote characters: bare ones outside strings, where they
/// make an empty text of a missing one, escaped ones inside, so that a name with that word leaves the array
/// readable.
[[nodiscard]] std::string withoutNulls(std::string text);

}  // namespace scenes
