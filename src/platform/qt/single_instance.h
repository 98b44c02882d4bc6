#pragma once

#include <QFile>
#include <QLocalServer>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace platform {

/// The one running copy of a program, per user and machine. While it lives no other copy can claim the same
/// name; it ends with the process, however that ends.
class SingleInstance final : public QObject {
    Q_OBJECT

 public:
    /// The longest time that a second start waits to be heard.
    static constexpr std::chrono::seconds kPatience{10};

    /// Claims `name`, which must be usable as a file name. Null when another copy has it: that copy was asked
    /// to come to the front, and the caller should end with status 0. A copy that is blocked in a camera
    /// request or an import hears the question afterwards; this waits for it no longer than `patience`. An
    /// alert tells the user where the other copy has the name but takes no questions.
    ///
    /// Where no lock can be had (no folder for run-time files, say) a WARNING line goes to the standard
    /// error, and the program runs without one: a lecture matters more.
    [[nodiscard]] static std::unique_ptr<SingleInstance> claim(
        const QString &name, std::chrono::milliseconds patience = kPatience);

 signals:
    /// The user started the program again and expects to see its window. While the slots run, the start's
    /// Wayland activation token stands in the environment, where Qt takes it from to activate a window.
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
