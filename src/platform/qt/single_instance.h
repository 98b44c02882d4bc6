#pragma once

#include <QFile>
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>

namespace platform {

/// The one running copy of a program, per user and machine: while this object lives, nobody else can claim
/// its name. The name is free again when the process ends, however it ends.
class SingleInstance final : public QObject {
    Q_OBJECT

 public:
    /// How long a second start waits for an answer.
    static constexpr std::chrono::seconds kPatience{10};

    /// The user's own folder on this machine that takes the locks: that of the session in /run/user, else one
    /// in /tmp. It does not depend on the environment, in which two starts of one user may differ. Empty when
    /// there is none that nobody else can enter.
    [[nodiscard]] static QString lockFolder();

    /// Claims `name`, which must be usable as a file name, in `folder`. Null when another copy has it: that
    /// copy was asked to come to the front, and the caller should end with status 0. A copy that is blocked
    /// by a camera request or an import does so afterwards; this waits for its answer no longer than
    /// `patience`. Then an alert tells the user that the program is open and does not respond; this returns
    /// when it is closed.
    ///
    /// Without a lock (no folder for it, say) the program runs all the same, and a WARNING line
    /// goes to the standard error: a lecture matters more.
    [[nodiscard]] static std::unique_ptr<SingleInstance> claim(
        const QString &name, const QString &folder = lockFolder(),
        std::chrono::milliseconds patience = kPatience);

 signals:
    /// The user started the program again and expects to see its window. While the slots run, the
    /// Wayland activation token of that start is in the environment, where Qt looks for it.
    void startedAgain();

 private:
    enum class Lock { ours, taken, impossible };

    SingleInstance() = default;

    [[nodiscard]] Lock lock();
    void listen(const QString &socket);
    void answer();

    QFile lockFile_;
    QLocalServer server_;
};

}  // namespace platform
