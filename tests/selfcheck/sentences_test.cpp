// The page in docs/ and the program say the same.
#include "selfcheck/sentences.h"

#include <gtest/gtest.h>

#include "selfcheck/sentence_page.h"
#include "support/files.h"

namespace {

TEST(SentencesTest, ThePageHasTheProgramsWordsToTheByte) {
    const std::string page = support::contentOf(ZEL_TEST_DATA "/../../docs/diagnostico.md");
    EXPECT_EQ(selfcheck::withSentences(page), page) << "ninja update_diagnosis_page writes it anew";
    for (const char *comment : {"<!-- escenas -->", "<!-- / -->"}) {
        std::string without = page;
        without.erase(without.rfind(comment), std::string(comment).size());
        EXPECT_FALSE(selfcheck::withSentences(without)) << comment;
    }
}

TEST(SentencesTest, ValuesStandAsTheyAreWhateverTheyHold) {
    const auto line = selfcheck::say(selfcheck::Sentence::fileFatal, {"{Norte} / %1", "/d/{a}"});
    EXPECT_EQ(line.text, "{Norte} / %1: fichero dañado o de otro programa; cierra el programa al arrancar");
    EXPECT_EQ(line.detail, "Mueva este fichero a otra carpeta: /d/{a}");
}

}  // namespace
