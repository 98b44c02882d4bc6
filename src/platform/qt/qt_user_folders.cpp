#include "platform/qt/qt_user_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QStandardPaths>
#include <QtGlobal>
#include <vector>

namespace platform {
namespace {

/// The home folder of the password database; empty when it knows none.
QByteArray homeOfPasswordDatabase() {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
        return {};
    return QByteArray(found->pw_dir);
}

/// Qt takes an unset HOME for "/". While this lives, HOME holds the account's own home folder instead.
class HomeVariable {
 public:
    HomeVariable() {
        if (!qEnvironmentVariableIsEmpty("HOME")) return;
        const QByteArray home = homeOfPasswordDatabase();
        if (home.isEmpty()) return;
        wasSet_ = qEnvironmentVariableIsSet("HOME");
        lent_ = qputenv("HOME", home);
    }
    ~HomeVariable() {
        if (!lent_) return;
        if (wasSet_) {
            qputenv("HOME", QByteArray(""));
        } else {
            qunsetenv("HOME");
        }
    }
    HomeVariable(const HomeVariable &) = delete;
    HomeVariable &operator=(const HomeVariable &) = delete;

 private:
    bool lent_ = false;
    bool wasSet_ = false;
};

std::optional<std::string> locate(QStandardPaths::StandardLocation location) {
    const HomeVariable home;
    if (qEnvironmentVariableIsEmpty("HOME")) return std::nullopt;
    const QString path = QDir::cleanPath(QStandardPaths::writableLocation(location));
    if (!QDir::isAbsolutePath(path) || path == QStringLiteral("/")) return std::nullopt;
    return path.toStdString();
}

}  // namespace

std::optional<std::string> QtUserFolders::documents() const {
    return locate(QStandardPaths::DocumentsLocation);
}

std::optional<std::string> QtUserFolders::downloads() const {
    return locate(QStandardPaths::DownloadLocation);
}

}  // namespace platform
