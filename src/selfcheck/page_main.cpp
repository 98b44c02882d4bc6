// Writes the sentences into docs/diagnostico.md, whose path is the one argument.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "selfcheck/sentence_page.h"

int main(int argc, char *argv[]) {
    const char *path = argc == 2 ? argv[1] : "";
    std::ifstream file(path, std::ios::binary);
    const auto page = selfcheck::withSentences({std::istreambuf_iterator<char>(file), {}});
    if (!page) {
        std::fprintf(stderr, "%s: no page with a place for every part\n", path);
        return EXIT_FAILURE;
    }
    file.close();
    std::ofstream out(path, std::ios::binary);
    return (out << *page).flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
