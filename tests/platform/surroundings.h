#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QtGlobal>

#include <fstream>
#include <iterator>
#include <string>

/// An environment variable with another value (null: unset) for as long as this lives.
class ScopedVariable {
 public:
    ScopedVariable(const char *name, const char *value)
        : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), previous_(qgetenv(name)) {
        assign(value != nullptr, QByteArray(value));
    }
    ~ScopedVariable() { assign(wasSet_, previous_); }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

 private:
    void assign(bool set, const QByteArray &value) {
        if (set) {
            qputenv(name_, value);
        } else {
            qunsetenv(name_);
        }
    }

    const char *name_;
    bool wasSet_;
    QByteArray previous_;
};

/// A folder of its own for each test.
class FolderTest : public ::testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(folder_.isValid()); }

    [[nodiscard]] std::string path(const std::string &name = {}) const {
        const std::string root = folder_.path().toStdString();
        return name.empty() ? root : root + "/" + name;
    }
    static void write(const std::string &file, const std::string &text) {
        std::ofstream(file, std::ios::binary) << text;
    }
    [[nodiscard]] static std::string read(const std::string &file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

 private:
    QTemporaryDir folder_;
};
