#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "support/temporary_documents.h"

/// What the scene store's tests do around the store: files, samples, and the lines that are printed.
namespace store_files {

/// Everything that `action` prints on standard output.
template <typename Action>
std::string printedBy(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

inline std::string contentOf(const std::filesystem::path &path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write(const std::filesystem::path &path, std::string_view content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << content;
    ASSERT_TRUE(file.flush()) << path;
}

inline std::filesystem::path samplePath(const std::string &name) {
    return std::filesystem::path(ZEL_TEST_DATA) / "scenes" / (name + ".presets");
}

inline std::string sample(const std::string &name) {
    return contentOf(samplePath(name));
}

/// A Documents folder with an empty store in it.
class StoreTest : public testing::Test {
 protected:
    StoreTest() { std::filesystem::create_directory(store()); }

    [[nodiscard]] std::filesystem::path store() const { return documents.path() / "Presets"; }

    support::TemporaryDocuments documents;
};

}  // namespace store_files
