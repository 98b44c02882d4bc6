#pragma once

#include <string>

/// Name of the scene store's folder under Documents.
inline const std::string PresetsFolder = "Presets";
