#include "platform/qt/single_instance.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QFileInfo>
#include <QLocalSocket>
#include <QTest>
#include <filesystem>
#include <future>
#include <memory>

#include "support/answered_alerts.h"
#include "surroundings.h"

namespace {

using namespace std::chrono_literals;

class SingleInstance : public FolderTest {
 protected:
    using Claimed = std::unique_ptr<platform::SingleInstance>;

    [[nodiscard]] Claimed claim(std::chrono::milliseconds patience = 5s) const {
        return platform::SingleInstance::claim(QStringLiteral("zel"), QString::fromStdString(path()),
                                               patience);
    }

    /// Starts a second copy; meanwhile this one's events are looked at. Whether
    /// the second may run.
    [[nodiscard]] bool mayStartAgain() const {
        auto second = std::async(std::launch::async, [this] { return claim() != nullptr; });
        while (second.wait_for(5ms) != std::future_status::ready) QCoreApplication::processEvents();
        return second.get();
    }
};

TEST_F(SingleInstance, SecondStartAsksTheFirstToShowItself) {
    const support::AnsweredAlerts alerts;
    const Claimed first = claim();
    QByteArrayList tokens;
    QObject::connect(first.get(), &platform::SingleInstance::startedAgain,
                     [&] { tokens.append(qgetenv("XDG_ACTIVATION_TOKEN")); });
    EXPECT_FALSE(mayStartAgain());
    QLocalSocket desktop;
    desktop.connectToServer(QString::fromStdString(path("zel.socket")));
    desktop.write("ficha\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return tokens.size() == 2; }, 3000));
    EXPECT_EQ(tokens, QByteArrayList({"", "ficha"})) << "what the desktop let the second do, the first may";
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")) << "it serves once";
    EXPECT_TRUE(alerts.shown().empty());

    EXPECT_FALSE(claim(50ms)) << "nobody looked at the first one's events, and "
                                 "the second does not hang";
    ASSERT_EQ(alerts.shown().size(), 1) << "nor does it end in silence";
    EXPECT_NE(alerts.shown()[0].informativeText.find(". Espere un momento y búsquelo"), std::string::npos);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tokens.size() == 3; }, 3000));
}

TEST_F(SingleInstance, CopyThatEndsLocksNobodyOut) {
    const pid_t killed = fork();
    if (killed == 0) _exit(claim() ? 0 : 1);  // no destructor runs
    int status = -1;
    waitpid(killed, &status, 0);
    EXPECT_EQ(status, 0);
    ASSERT_TRUE(std::filesystem::exists(path("zel.socket"))) << "it left its socket behind";
    Claimed first = claim();
    EXPECT_FALSE(mayStartAgain());
    // The sticky bit, so that programs that tidy up leave it alone.
    EXPECT_EQ(std::filesystem::status(path("zel.lock")).permissions(), std::filesystem::perms(01600));

    auto second = std::async(std::launch::async, [this] { return claim() != nullptr; });
    EXPECT_EQ(second.wait_for(200ms), std::future_status::timeout);
    first.reset();
    EXPECT_TRUE(second.get()) << "the first ended before it answered";
}

TEST_F(SingleInstance, FolderMayFailButDoesNotFollowTheEnvironment) {
    EXPECT_TRUE(platform::SingleInstance::claim(QStringLiteral("zel"), QStringLiteral("/proc/nowhere")));
    const QString before = platform::SingleInstance::lockFolder();
    EXPECT_TRUE(QFileInfo(before).isDir());
    const ScopedVariable session("XDG_RUNTIME_DIR", path().c_str());
    EXPECT_EQ(platform::SingleInstance::lockFolder(), before) << "two starts would open one store";
}

}  // namespace
