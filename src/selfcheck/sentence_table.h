#pragma once

#include <span>

#include "selfcheck/sentences.h"

namespace selfcheck {

/// A sentence as the program shows it, and what docs/diagnostico.md adds to it.
struct SentenceRow {
    Sentence sentence;
    State state;
    const char *text;     ///< in braces: an example of what only a check knows
    const char *detail;   ///< the same; may be empty
    const char *meaning;  ///< for the page only; may be empty
};

/// The sentences of one part of the report.
struct SentencePart {
    const char *name;  ///< that the page has it under
    std::span<const SentenceRow> rows;
};

/// The one table that the program and the page have their words from: each sentence once.
[[nodiscard]] std::span<const SentencePart> sentenceTable();

}  // namespace selfcheck
