#include "platform/qt/single_instance.h"

#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QSocketNotifier>
#include <QThread>
#include <QtGlobal>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/services.h"

namespace platform {
namespace {

constexpr const char *kTokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr qint64 kLongestQuestion = 4096;
constexpr unsigned long kRetryMs = 50;

// Sockets of the system's own: Qt's come with a library for all of the internet, which takes longer to load
// than the rest of the program.

/// Nothing for a path that no socket can have.
std::optional<sockaddr_un> addressOf(const QByteArray &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) return std::nullopt;
    std::ranges::copy(path, address.sun_path);
    return address;
}

const sockaddr *generic(const sockaddr_un &address) {
    return reinterpret_cast<const sockaddr *>(&address);
}

/// A new socket in `file`, which closes it.
bool openSocket(QFile &file, int flags) {
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    return handle >= 0 && file.open(handle, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
}

/// How long one call may wait: `option` is SO_SNDTIMEO (connecting, too) or SO_RCVTIMEO.
void limitWait(const QFile &socket, int option, QDeadlineTimer deadline) {
    const qint64 left = std::max<qint64>(deadline.remainingTime(), 1);  // 0 would be for ever
    const timeval limit{left / 1000, left % 1000 * 1000};
    std::ignore = ::setsockopt(socket.handle(), SOL_SOCKET, option, &limit, sizeof limit);
}

/// Asks the copy behind the socket `path` to come to the front. Whether it answered; if it did not although
/// it was reached, it comes as soon as it can.
bool askToShow(const QByteArray &path, QDeadlineTimer deadline) {
    const auto address = addressOf(path);
    QFile connection;
    if (!address || !openSocket(connection, 0)) return false;
    limitWait(connection, SO_SNDTIMEO, deadline);
    if (::connect(connection.handle(), generic(*address), sizeof *address) != 0) return false;
    const QByteArray question = qgetenv(kTokenVariable) + '\n';
    std::ignore = ::send(connection.handle(), question.constData(), static_cast<std::size_t>(question.size()),
                         MSG_NOSIGNAL);
    limitWait(connection, SO_RCVTIMEO, deadline);
    char answer = 0;
    return ::recv(connection.handle(), &answer, 1, 0) == 1;
}

/// What another start asks. It goes when it is answered, or the other one has gone.
class Question final : public QObject {
 public:
    /// Takes over `handle`, a socket that does not block. `show` gets what the desktop gave the other start.
    Question(int handle, std::function<void(const QByteArray &token)> show, QObject *parent)
        : QObject(parent), notifier_(handle, QSocketNotifier::Read), show_(std::move(show)) {
        std::ignore = socket_.open(handle, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { read(); });
        read();  // it may be here already
    }

 private:
    void read() {
        std::array<char, 256> piece{};
        const ssize_t got = ::recv(socket_.handle(), piece.data(), piece.size(), 0);
        if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (got > 0) text_.append(piece.data(), got);
        const qsizetype end = text_.indexOf('\n');
        if (got > 0 && end < 0 && text_.size() <= kLongestQuestion) return;

        notifier_.setEnabled(false);
        deleteLater();
        if (end < 0) return;
        show_(text_.first(end).trimmed());
        std::ignore = ::send(socket_.handle(), "\n", 1, MSG_NOSIGNAL);
    }

    QFile socket_;
    QSocketNotifier notifier_;
    std::function<void(const QByteArray &)> show_;
    QByteArray text_;
};

/// Whether `folder` is a real one that the user owns and nobody else can enter.
bool isPrivate(const QString &folder) {
    struct stat found {};
    return lstat(QFile::encodeName(folder).constData(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == geteuid() && (found.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == S_IRWXU;
}

void warnUnguarded(const QString &reason) {
    std::fprintf(stderr, "WARNING: a second copy of the program would not be noticed: %s\n",
                 qPrintable(reason));
}

/// For the copy that runs but does not answer.
void tellThatItRuns() {
    std::ignore = services().alerts->run({.messageText = "El programa ya está abierto, pero no responde",
                                          .informativeText =
                                              "Puede que espere a la cámara o que esté importando escenas. "
                                              "Espere un momento y búsquelo entre las ventanas abiertas. Si "
                                              "sigue sin responder, reinicie el ordenador.",
                                          .buttons = {"Aceptar"},
                                          .windowTitle = std::nullopt,
                                          .fieldText = std::nullopt});
}

}  // namespace

QString SingleInstance::lockFolder() {
    const QString user = QString::number(geteuid());
    if (QString session = QStringLiteral("/run/user/") + user; isPrivate(session)) return session;
    // Not QDir::tempPath(): that one follows TMPDIR.
    QString own = QStringLiteral("/tmp/zelvoria-") + user;
    mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    return isPrivate(own) ? own : QString();
}

std::unique_ptr<SingleInstance> SingleInstance::claim(const QString &name, const QString &folder,
                                                      std::chrono::milliseconds patience) {
    std::unique_ptr<SingleInstance> instance(new SingleInstance);
    const QByteArray socket = QFile::encodeName(QDir(folder).filePath(name + QStringLiteral(".socket")));
    instance->lockFile_.setFileName(QDir(folder).filePath(name + QStringLiteral(".lock")));
    if (folder.isEmpty()) {
        warnUnguarded(QStringLiteral("no folder of the user's own for the lock"));
        return instance;
    }
    if (!instance->lockFile_.open(QIODevice::ReadWrite)) {
        warnUnguarded(instance->lockFile_.errorString());
        return instance;
    }

    const QDeadlineTimer deadline(patience);
    for (;;) {
        switch (instance->lock()) {
            case Lock::ours:
                instance->listen(socket);
                return instance;
            case Lock::impossible:
                return instance;
            case Lock::taken:
                break;
        }
        if (askToShow(socket, deadline)) return nullptr;
        if (deadline.hasExpired()) {
            tellThatItRuns();
            return nullptr;
        }
        // Once more: the other copy may be ending, or may have the lock but not its socket yet.
        QThread::msleep(kRetryMs);
    }
}

SingleInstance::Lock SingleInstance::lock() {
    // The kernel drops this lock with the process. The file stays, and means nothing.
    if (flock(lockFile_.handle(), LOCK_EX | LOCK_NB) == 0) {
        // Programs that tidy up run-time files leave those with the sticky bit alone.
        fchmod(lockFile_.handle(), S_IRUSR | S_IWUSR | S_ISVTX);
        return Lock::ours;
    }
    if (errno == EWOULDBLOCK || errno == EINTR) return Lock::taken;
    warnUnguarded(QString::fromLocal8Bit(std::strerror(errno)));
    return Lock::impossible;
}

void SingleInstance::listen(const QByteArray &path) {
    ::unlink(path.constData());  // left by a killed copy: we hold the lock
    const auto address = addressOf(path);
    if (!address) errno = ENAMETOOLONG;
    if (!address || !openSocket(server_, SOCK_NONBLOCK) ||
        ::bind(server_.handle(), generic(*address), sizeof *address) != 0 ||
        ::listen(server_.handle(), SOMAXCONN) != 0) {
        std::fprintf(stderr, "WARNING: a second start cannot show this one's window: %s\n",
                     std::strerror(errno));
        return server_.close();
    }
    path_ = path;
    connect(new QSocketNotifier(server_.handle(), QSocketNotifier::Read, this), &QSocketNotifier::activated,
            this, &SingleInstance::accept);
}

SingleInstance::~SingleInstance() {
    if (!path_.isEmpty()) ::unlink(path_.constData());
}

void SingleInstance::accept() {
    for (;;) {
        const int handle = ::accept4(server_.handle(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (handle < 0) return;
        new Question(
            handle, [this](const QByteArray &token) { show(token); }, this);
    }
}

void SingleInstance::show(const QByteArray &token) {
    if (!token.isEmpty()) qputenv(kTokenVariable, token);
    emit startedAgain();
    qunsetenv(kTokenVariable);
}

}  // namespace platform
