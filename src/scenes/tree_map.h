#pragma once

#include <map>
#include <string>
#include <vector>

#include "scenes/manual_preset.h"
#include "scenes/name_order.h"

namespace scenes {

/// A centre's rooms and their scenes, in the order of their files.
using RoomMap = std::map<std::string, std::vector<ManualPreset>, NameLess>;
/// The centres and their rooms.
using SceneTree = std::map<std::string, RoomMap, NameLess>;

}  // namespace scenes
