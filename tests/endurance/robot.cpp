// A robot uses the window at random. At every step the tree in memory, the lists on the screen and the store
// on the disk tell what the steps so far must have made. The sanitizers watch; memory and handles do not
// grow.
//   robot [SECONDS [SEED]]
#include <sys/wait.h>
#include <unistd.h>

#include <QAbstractItemView>
#include <QDeadlineTimer>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPixmapCache>
#include <QTimer>
#include <random>

#include "platform/qt/qt_alerts.h"
#include "platform/qt/qt_file_panels.h"
#include "scenes/name_order.h"
#include "support/application_fixture.h"
#include "support/printed.h"

/// AddressSanitizer's: GCC brings no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

using Names = std::vector<std::string>;
using scenes::SceneTree;

constexpr const char *kNames[] = {"Norte",       "norte",     "Aula Ñ",     "Aula N\u0303", " en blanco ",
                                  " ",           "",          "../ajena",   "-rf",          "/",
                                  "presets",     "Sin grupo", " Sin grupo", "🎓 Ω",          "\"<b>&\\%n",
                                  "$(touch x);", "corch]ete"};

class Robot : public ApplicationTest {
 protected:
    Robot() {
        auto services = platform::services();
        services.alerts = std::make_shared<platform::QtAlerts>();
        services.panels = std::make_shared<platform::QtFilePanels>();
        platform::installServices(services);
        QObject::connect(&answering_, &QTimer::timeout, [this] { answer(); });
        answering_.start(1);
    }

    std::size_t draw(std::size_t below) { return random_() % below; }
    template <typename List>
    auto any(const List &list) {
        return std::data(list)[draw(std::size(list))];
    }

    /// Whatever waits for an answer gets the one that was drawn; a panel is cancelled.
    void answer() {
        QWidget *asking = QApplication::activeModalWidget();
        if (!asking) return;
        ++asked_;
        if (auto *field = asking->findChild<QLineEdit *>("alertField"))
            field->setText(QString::fromStdString(text_));
        const bool isAlert = asking->objectName() == QStringLiteral("alert");
        QTest::keyClick(asking, isAlert && accepts_ ? Qt::Key_Return : Qt::Key_Escape);
    }

    /// Presses one of three buttons, which asks. Which one it was, if it could be pressed and the answer
    /// counts.
    std::optional<std::size_t> pressOneOf(const std::array<const char *, 3> &buttons) {
        const std::size_t level = draw(3);
        const bool isEnabled = button(buttons[level])->isEnabled();
        const int before = asked_;
        accepts_ = draw(4) != 0;
        text_ = draw(9) == 0 ? std::string(246 + draw(12), 'x') : any(kNames);  // some too long for a file
        click(buttons[level]);
        EXPECT_EQ(asked_ - before, isEnabled ? 1 : 0) << buttons[level];
        return isEnabled && accepts_ ? std::optional(level) : std::nullopt;
    }

    void choose() {
        QComboBox *box = picker(any(std::array{"pickerCentro", "pickerAula", "pickerEscena"}));
        if (!box->isEnabled()) return;
        const auto key =
            any(std::array{Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown});
        if (draw(2) == 0) return QTest::keyClick(box, key);
        box->showPopup();
        QTest::keyClick(box->view(), key);
        QTest::keyClick(box->view(), draw(4) == 0 ? Qt::Key_Escape : Qt::Key_Return);
    }

    void add() {
        const auto at = ZEL_GetPanTiltPosition();
        const auto zoom = ZEL_GetZoomPosition().at("Zoom_Value");
        const auto [centre, room] = selected();
        const auto level = pressOneOf({"buttonAddCentro", "buttonAddAula", "buttonAddEscena"});
        if (!level || text_.empty()) return;
        if (level == 0) tree_[text_];
        if (level == 1) tree_[centre][text_];
        if (level == 2)
            tree_[centre][room].push_back(scene(text_, at.at("Pan_Value"), at.at("Tilt_Value"), zoom));
    }

    void remove() {
        const auto [centre, room] = selected();
        const int scene = picker("pickerEscena")->currentIndex();
        const auto level = pressOneOf({"buttonRemoveCentro", "buttonRemoveAula", "buttonRemoveEscena"});
        if (level == 0 && centre != scenes::kNoCentre) tree_.erase(centre);
        if (level == 1) tree_[centre].erase(room);
        if (level == 2) tree_[centre][room].erase(tree_[centre][room].begin() + scene);
    }

    void nudge() {
        if (draw(2) == 0)
            return click(any(std::array{"buttonArriba", "buttonDerecha", "buttonAcercar", "buttonAlejar"}));
        command(any(std::array{"Mover_Izquierda_Delegate", "Mover_Abajo_Delegate", "Mover_ZoomIn_Delegate"}));
    }

    /// The panel that saves stays open until the next time.
    void openAndCancel() {
        for (QWidget *window : QApplication::topLevelWidgets())
            if (window->objectName() == QStringLiteral("savePanel") && window->isVisible())
                return QTest::keyClick(window, Qt::Key_Escape);
        command(any(std::array{"ExportPresets", "ImportPresets", "AcercaDe"}));
    }

    void unplugAndPlug() {
        bench_.bus->unplug(bench_.camera);
        openAndCancel();
        bench_.bus->plug(bench_.camera, 1, {static_cast<std::uint8_t>(1 + draw(7))});
    }

    /// An order without a camera ends the program after its alert, and the next one starts on the same store.
    void loseCamera() {
        // Right after a start no panel is open: its threads may hold locks, and a copy of the process would
        // too.
        startAnew();
        const pid_t program = ::fork();
        if (program == 0) {
            ::alarm(60);
            bench_.bus->unplug(bench_.camera);
            nudge();
            std::_Exit(1);
        }
        int status = -1;
        ::waitpid(program, &status, 0);
        EXPECT_EQ(status, 0);
        startAnew();
    }

    void startAnew() {
        delegate_.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QPixmapCache::clear();
        tree_ = stored();
        memory_.push_back(__sanitizer_get_current_allocated_bytes());
        const std::filesystem::directory_iterator handles("/proc/self/fd");
        handles_.push_back(static_cast<std::size_t>(std::distance(handles, {})));
        launch();
    }

    /// What the disk keeps of the tree. A name that is too long or leads elsewhere is not written; a scene
    /// with a bracket makes its room unreadable.
    [[nodiscard]] SceneTree stored() const {
        const auto isBad = [](const auto &entry, std::size_t longest) {
            return entry.first.find('/') != std::string::npos || entry.first.size() > longest;
        };
        const auto isCut = [](const ManualPreset &scene) {
            return scene.Name.find(']') != std::string::npos;
        };
        SceneTree disk = tree_;
        std::erase_if(disk, [&](const auto &centre) { return isBad(centre, 255); });
        for (auto &[centre, rooms] : disk) {
            std::erase_if(rooms, [&](const auto &room) { return isBad(room, 247); });
            for (auto &[room, scenes] : rooms)
                if (std::ranges::any_of(scenes, isCut)) scenes.clear();
        }
        return disk;
    }

    [[nodiscard]] std::array<std::string, 2> selected() const {
        return {picker("pickerCentro")->currentText().toStdString(),
                picker("pickerAula")->currentText().toStdString()};
    }

    void expectShown(const std::string &level, const Names &names, bool canBeRemoved) {
        Names shown;
        for (const QString &entry : entries(("picker" + level).c_str())) shown.push_back(entry.toStdString());
        EXPECT_EQ(shown, names) << level;
        EXPECT_EQ(button(("buttonRemove" + level).c_str())->isEnabled(), canBeRemoved) << level;
    }

    void check() {
        EXPECT_TRUE(Gruposss == tree_);
        EXPECT_TRUE(obtenerPresets() == stored());
        const std::filesystem::directory_iterator documents(documents_.path());
        EXPECT_EQ(std::distance(documents, {}), 1) << "the store alone";
        const auto [centre, room] = selected();
        Names centres, rooms, scenes;
        for (const auto &entry : tree_) centres.push_back(entry.first);
        for (const auto &entry : tree_[centre]) rooms.push_back(entry.first);
        if (!rooms.empty())
            for (const ManualPreset &scene : tree_[centre][room]) scenes.push_back(scene.Name);
        scenes::sortCentreNames(centres);
        scenes::sortRoomNames(rooms);
        expectShown("Centro", centres, true);
        expectShown("Aula", rooms, !rooms.empty());
        expectShown("Escena", scenes, !scenes.empty());
        EXPECT_EQ(button("buttonAddEscena")->isEnabled(), !rooms.empty());
        EXPECT_LE(std::max(bench_.panTiltSets(), bench_.zoomSets()), 1);
        EXPECT_EQ(bench_.bus->openHandles(), 0);
    }

    /// Caches fill in the first quarter of the time; the second quarter and the last one are alike.
    static void expectNoGrowth(const char *what, const std::vector<std::size_t> &at, std::size_t allowance) {
        const std::size_t quarter = at.size() / 4;
        if (HasFailure()) return;
        ASSERT_GE(quarter, 1) << "too short to see what grows";
        const auto early = std::ranges::min(std::span(at).subspan(quarter, quarter));
        const auto late = std::ranges::min(std::span(at).last(quarter));
        std::printf("robot: %s before %zu, after %zu\n", what, early, late);
        EXPECT_LE(late, early + allowance) << what;
    }

    std::mt19937 random_;
    QTimer answering_;
    int asked_ = 0;
    bool accepts_ = true;
    std::string text_;
    SceneTree tree_{{scenes::kNoCentre, {}}};
    std::vector<std::size_t> memory_, handles_;
};

TEST_F(Robot, UsesTheWindow) {
    const QStringList given = QCoreApplication::arguments();
    const qint64 seconds = given.value(1, "3600").toLongLong();
    const unsigned seed = given.size() > 2 ? given[2].toUInt() : std::random_device{}();
    std::printf("robot: %lld s, seed %u\n", seconds, seed);
    std::fflush(stdout);
    random_.seed(seed);
    // "This plugin does not support raise()", at every alert.
    QLoggingCategory::setFilterRules("default.warning=false");
    const std::pair<const char *, std::function<void()>> kinds[] = {
        {"choices", [this] { choose(); }},       {"added", [this] { add(); }},
        {"removed", [this] { remove(); }},       {"nudges", [this] { nudge(); }},
        {"panels", [this] { openAndCancel(); }}, {"unplugged and plugged", [this] { unplugAndPlug(); }},
        {"starts", [this] { startAnew(); }},     {"ended by a lost camera", [this] { loseCamera(); }}};
    std::discrete_distribution<std::size_t> next{40, 20, 12, 20, 4, 2, 1, 1};
    std::map<std::string, int> counts;
    launch();
    std::size_t steps = 0;
    for (QDeadlineTimer end(1000 * seconds); !HasFailure() && !end.hasExpired(); ++steps) {
        const auto &[kind, act] = kinds[next(random_)];
        ++counts[kind];
        bench_.camera->forgetTransfers();
        const std::string said = support::printedBy([&, act = act] {
            act();
            QApplication::processEvents();
            check();
        });
        if (HasFailure()) std::printf("%srobot: seed %u, step %zu (%s)\n", said.c_str(), seed, steps, kind);
    }
    for (const auto &[kind, count] : counts) std::printf("robot: %d %s\n", count, kind.c_str());
    // Qt 6.4 itself keeps some 2 KB of a file dialog and some 100 bytes of a popup, whoever shows them.
    expectNoGrowth("bytes in use", memory_, 200'000 + 50 * steps);
    expectNoGrowth("open files", handles_, 0);
}

}  // namespace
