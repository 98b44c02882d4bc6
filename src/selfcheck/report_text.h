#pragma once

#include <string>

#include "selfcheck/findings.h"

namespace selfcheck {

/// The report as plain text for a message to whoever looks after the room, one finding a line, ended by a
/// line feed. `date` and `version` go into its head as they are.
[[nodiscard]] std::string textOf(const Report &report, const std::string &date, const std::string &version);

}  // namespace selfcheck
