#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstdlib>
#include <optional>
#include <string>

#include "support/files.h"

/// An environment variable with another value (null: unset) for as long as this lives.
class ScopedVariable {
 public:
    ScopedVariable(const char *name, const char *value) : name_(name) {
        if (const char *before = std::getenv(name)) previous_ = before;
        assign(value);
    }
    ~ScopedVariable() { assign(previous_ ? previous_->c_str() : nullptr); }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

 private:
    void assign(const char *value) const { value ? setenv(name_, value, 1) : unsetenv(name_); }

    const char *name_;
    std::optional<std::string> previous_;
};

/// A folder of its own for each test.
class FolderTest : public ::testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(folder_.isValid()); }

    [[nodiscard]] std::string path(const std::string &name = {}) const {
        const std::string root = folder_.path().toStdString();
        return name.empty() ? root : root + "/" + name;
    }
    void write(const std::string &name, const std::string &text) const {
        support::writeFile(path(name), text);
    }
    [[nodiscard]] std::string read(const std::string &name) const { return support::contentOf(path(name)); }

 private:
    QTemporaryDir folder_;
};
