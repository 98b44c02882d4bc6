#pragma once

#include <string>
#include <string_view>
#include <vector>

/// How names of centres and rooms are compared: by canonical equivalence ("Á" is the same name whether
/// written as one character or as two), ordered by the code points of their NFC forms. The locale plays no
/// part. A name that is not UTF-8 (file names may be) is compared by its bytes.
namespace scenes {

[[nodiscard]] bool sameName(std::string_view a, std::string_view b);

/// The strict weak order of the scene tree's keys.
struct NameLess {
    [[nodiscard]] bool operator()(const std::string &a, const std::string &b) const;
};

/// Ascending: capitals before small letters, accented letters after z, " Sin grupo" before any name without a
/// leading blank. Stable.
void sortCentreNames(std::vector<std::string> &names);

/// Ascending by the lower-cased names; names that differ in case only keep their order. Stable.
void sortRoomNames(std::vector<std::string> &names);

}  // namespace scenes
