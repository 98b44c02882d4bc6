#include "selfcheck/sentence_page.h"

#include <algorithm>

#include "selfcheck/sentence_table.h"

namespace selfcheck {
namespace {

/// What only a check knows stands in italics.
std::string shown(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '{' || c == '}'; }, '*');
    return text;
}

std::string tableOf(const SentencePart &part) {
    std::string table = "| Se lee | Debajo | Qué significa |\n| --- | --- | --- |\n";
    for (const SentenceRow &row : part.rows)
        table += "| **" + stateWord(row.state) + ".** " + shown(row.text) + " | " + shown(row.detail) +
                 " | " + row.meaning + " |\n";
    return table;
}

}  // namespace

std::optional<std::string> withSentences(std::string page) {
    for (const SentencePart &part : sentenceTable()) {
        const std::string begin = std::string("<!-- ") + part.name + " -->\n";
        const auto place = page.find(begin);
        if (place == std::string::npos) return std::nullopt;
        const auto table = place + begin.size();
        const auto end = page.find("<!-- / -->", table);
        if (end == std::string::npos) return std::nullopt;
        page.replace(table, end - table, tableOf(part));
    }
    return page;
}

}  // namespace selfcheck
