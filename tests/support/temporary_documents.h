#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "platform/fatal.h"
#include "platform/services.h"

namespace support {

/// Gives the process a Documents and a Downloads folder of its own, both empty, for as long as the object
/// lives. Only the folders of the installed services are replaced, and put back by the destructor, which also
/// removes everything the test left behind.
class TemporaryDocuments {
 public:
    TemporaryDocuments()
        : previous_(platform::services()), root_(makeRoot()), folders_(std::make_shared<Folders>()) {
        folders_->root = root_;
        std::filesystem::create_directories(path());
        std::filesystem::create_directories(downloads());
        install(folders_);
        isOuter_ =
            ::setenv(kOuterRoot, root_.c_str(), /*overwrite*/ 0) == 0 && root_ == std::getenv(kOuterRoot);
    }

    ~TemporaryDocuments() {
        if (isOuter_) ::unsetenv(kOuterRoot);
        install(previous_.folders);
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    TemporaryDocuments(const TemporaryDocuments &) = delete;
    TemporaryDocuments &operator=(const TemporaryDocuments &) = delete;

    /// The Documents folder, absolute.
    [[nodiscard]] std::filesystem::path path() const { return root_ / "Documents"; }
    /// The Downloads folder, absolute.
    [[nodiscard]] std::filesystem::path downloads() const { return root_ / "Downloads"; }
    /// A folder above both, for things that must stay untouched outside Documents.
    [[nodiscard]] std::filesystem::path root() const { return root_; }

    /// From now on the platform knows no Documents folder (or knows it again); the folder itself stays.
    void setDocumentsMissing(bool missing) { folders_->documentsMissing = missing; }

 private:
    struct Folders final : platform::UserFolders {
        [[nodiscard]] std::optional<std::string> documents() const override {
            if (documentsMissing) return std::nullopt;
            return (root / "Documents").string();
        }
        [[nodiscard]] std::optional<std::string> downloads() const override {
            return (root / "Downloads").string();
        }
        std::filesystem::path root;
        bool documentsMissing = false;
    };

    /// A test that cannot have its folder must not fall back to somebody's real one.
    static std::filesystem::path makeRoot() {
        std::error_code error;
        const char *outer = std::getenv(kOuterRoot);
        const auto base = outer ? std::filesystem::path(outer) : std::filesystem::temp_directory_path(error);
        std::string name = (base / "documents-XXXXXX").string();
        if (error || ::mkdtemp(name.data()) == nullptr) platform::fatalStop();
        return std::filesystem::canonical(name);
    }

    /// The child of a death test ends without its destructors. It builds its folder inside that of the
    /// process that started it, which then removes both.
    static constexpr char kOuterRoot[] = "TEMPORARY_DOCUMENTS_OUTER_ROOT";

    static void install(std::shared_ptr<platform::UserFolders> folders) {
        platform::Services services = platform::services();
        services.folders = std::move(folders);
        platform::installServices(std::move(services));
    }

    platform::Services previous_;
    std::filesystem::path root_;
    std::shared_ptr<Folders> folders_;
    bool isOuter_ = false;
};

}  // namespace support
