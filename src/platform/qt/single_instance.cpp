#include "platform/qt/single_instance.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>
#include <QtGlobal>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <tuple>

#include "platform/services.h"

namespace platform {
namespace {

constexpr const char *kTokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr qint64 kLongestQuestion = 4096;
constexpr unsigned long kRetryMs = 50;

/// Asks the copy behind `socket` to come to the front. Whether it answered; if it did not although it was
/// reached, it comes as soon as it can.
bool askToShow(const QString &socket, QDeadlineTimer deadline) {
    QLocalSocket connection;
    connection.connectToServer(socket);
    if (!connection.waitForConnected(static_cast<int>(deadline.remainingTime()))) return false;
    connection.write(qgetenv(kTokenVariable) + '\n');
    connection.flush();
    while (connection.bytesAvailable() == 0) {
        if (!connection.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return false;
    }
    return true;
}

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
    const QString socket = QDir(folder).filePath(name + QStringLiteral(".socket"));
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

void SingleInstance::listen(const QString &socket) {
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::answer);
    QLocalServer::removeServer(socket);  // left by a killed copy: we hold the lock
    if (!server_.listen(socket))
        std::fprintf(stderr, "WARNING: a second start cannot show this one's window: %s\n",
                     qPrintable(server_.errorString()));
}

void SingleInstance::answer() {
    while (QLocalSocket *connection = server_.nextPendingConnection()) {
        connection->setReadBufferSize(kLongestQuestion);
        connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
        const auto readQuestion = [this, connection] {
            if (!connection->canReadLine()) return;
            const QByteArray token = connection->readLine().trimmed();
            if (!token.isEmpty()) qputenv(kTokenVariable, token);
            emit startedAgain();
            qunsetenv(kTokenVariable);
            connection->write("\n");
            connection->flush();
            connection->disconnectFromServer();
        };
        connect(connection, &QLocalSocket::readyRead, this, readQuestion);
        readQuestion();  // it may be here already
    }
}

}  // namespace platform
