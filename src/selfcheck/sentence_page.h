#pragma once

#include <optional>
#include <string>

namespace selfcheck {

/// docs/diagnostico.md anew: `page` with the sentence table's parts between the comments "<!-- NAME -->" and
/// "<!-- / -->" that name them. Nothing when a part has no such place.
[[nodiscard]] std::optional<std::string> withSentences(std::string page);

}  // namespace selfcheck
