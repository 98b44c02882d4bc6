#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "platform/qt/qt_user_folders.h"
#include "surroundings.h"

namespace {

namespace fs = std::filesystem;

using UserFolders = FolderTest;

TEST_F(UserFolders, AreTheDesktopsOrTheUsualOnes) {
    const ScopedVariable home("HOME", path().c_str());
    const ScopedVariable config("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(platform::QtUserFolders().documents(), path("Documents"));
    EXPECT_EQ(platform::QtUserFolders().downloads(), path("Downloads"));

    const struct {
        const char *value;
        std::optional<std::string> documents;
    } rows[] = {
        {"\"$HOME/Mis Ñandúes/\"", path("Mis Ñandúes")},
        {"\"/srv/aulas//docs/\"", "/srv/aulas/docs"},
        {"\"$HOME/\"", path()},
        {"\"Documentos\"", std::nullopt},
        {"\"/\"", std::nullopt},
    };
    for (const auto &row : rows) {
        write(".config/user-dirs.dirs",
              std::string("XDG_DOCUMENTS_DIR=") + row.value + "\nXDG_DOWNLOAD_DIR=\"$HOME/Descargas\"\n");
        EXPECT_EQ(platform::QtUserFolders().documents(), row.documents) << row.value;
        EXPECT_EQ(platform::QtUserFolders().downloads(), path("Descargas")) << row.value;
    }
}

TEST_F(UserFolders, ComeFromThePasswordDatabaseWithoutHome) {
    const passwd *account = getpwuid(getuid());
    if (!account || account->pw_dir[0] != '/') GTEST_SKIP() << "this account has no home folder";
    const ScopedVariable config("XDG_CONFIG_HOME", path().c_str());
    const std::string expected = fs::path(account->pw_dir) / "Documents";
    for (const char *value : {static_cast<const char *>(nullptr), ""}) {
        const ScopedVariable home("HOME", value);
        EXPECT_EQ(platform::QtUserFolders().documents(), expected);
        EXPECT_EQ(qEnvironmentVariableIsSet("HOME"), value != nullptr) << "the environment is as it was";
    }
}

using UserFoldersDeath = UserFolders;

TEST_F(UserFoldersDeath, AreUnknownWithoutHomeAndAccount) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be somebody whom the database does not know";
    const ScopedVariable home("HOME", nullptr);
    const auto asAStranger = [] { _exit(setuid(4'242'424) != 0 || platform::QtUserFolders().documents()); };
    EXPECT_EXIT(asAStranger(), testing::ExitedWithCode(0), "");
}

}  // namespace
