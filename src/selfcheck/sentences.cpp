#include "selfcheck/sentences.h"

#include <string_view>
#include <utility>

#include "selfcheck/sentence_table.h"

namespace selfcheck {
namespace {

/// The table has each sentence once.
const SentenceRow &rowOf(Sentence sentence) {
    const SentenceRow *found = sentenceTable().front().rows.data();
    for (const SentencePart &part : sentenceTable())
        for (const SentenceRow &row : part.rows)
            if (row.sentence == sentence) found = &row;
    return *found;
}

/// `pattern` with values in the places of its braces, from the one at `next` on.
std::string filled(std::string_view pattern, const std::vector<std::string> &values, std::size_t &next) {
    std::string text;
    for (auto brace = pattern.find('{'); brace != std::string_view::npos; brace = pattern.find('{')) {
        text.append(pattern.substr(0, brace));
        if (next < values.size()) text.append(values[next++]);
        pattern.remove_prefix(pattern.find('}') + 1);
    }
    return text.append(pattern);
}

}  // namespace

std::string stateWord(State state) {
    switch (state) {
        case State::good:
            return "Bien";
        case State::warning:
            return "Aviso";
        case State::fault:
            return "Fallo";
        case State::information:
            break;
    }
    return "Dato";
}

Line say(Sentence sentence, const std::vector<std::string> &values) {
    const SentenceRow &row = rowOf(sentence);
    std::size_t next = 0;
    std::string text = filled(row.text, values, next);
    return {row.state, std::move(text), filled(row.detail, values, next)};
}

}  // namespace selfcheck
