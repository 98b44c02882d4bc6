#include <gmock/gmock.h>

#include <QDate>
#include <fstream>

#include "app/app_delegate.h"
#include "support/application_fixture.h"

namespace {

using testing::ElementsAre;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

class SceneTransfer : public ApplicationTest {
 protected:
    struct RecordedShell : platform::CommandShell {
        std::int32_t run(const std::vector<std::string> &arguments) override {
            ran.push_back(arguments);
            return 1;  // nobody looks at it
        }
        std::vector<std::vector<std::string>> ran;
    };

    SceneTransfer() {
        auto services = platform::services();
        services.shell = shell_;
        platform::installServices(services);
    }

    std::shared_ptr<RecordedShell> shell_ = std::make_shared<RecordedShell>();
};

TEST_F(SceneTransfer, ExportRunsTheUnquotedCommandAndPrintsIt) {
    panels_->savePath = "/tmp/mi copia";
    CaptureStdout();
    AppDelegate().ExportPresets();
    const std::string command = "cd " + documents_.path().string() + " && zip -r /tmp/mi copia.prs Presets";
    EXPECT_EQ(GetCapturedStdout(), "/tmp/mi copia\n" + command + "\n");
    EXPECT_THAT(shell_->ran, ElementsAre(ElementsAre(command)));
    EXPECT_EQ(panels_->startFolder, documents_.path().string());
    EXPECT_EQ(panels_->said, QDate::currentDate().toString(Qt::ISODate).toStdString());

    documents_.setDocumentsMissing(true);
    AppDelegate().ExportPresets();
    EXPECT_EQ(shell_->ran.size(), 1u);
    EXPECT_TRUE(alerts_.shown().empty()) << "done or not, nothing is said";
}

TEST_F(SceneTransfer, ImportWarnsAsksRunsAndReportsSuccessWhateverHappened) {
    panels_->openPath = "/tmp/escenas.prs";
    for (int i = 0; i < 3; ++i) alerts_.accept();
    CaptureStdout();
    AppDelegate().ImportPresets();
    const std::string command =
        "ditto -v -V -k -x /tmp/escenas.prs " + documents_.path().string() + "/Presets";
    EXPECT_EQ(GetCapturedStdout(), "Ejecutando: " + command + "\n");
    EXPECT_THAT(shell_->ran, ElementsAre(ElementsAre(command)));
    EXPECT_EQ(panels_->said, "Escoge un fichero de escenas");
    EXPECT_EQ(panels_->startFolder, documents_.downloads().string());

    ASSERT_EQ(alerts_.shown().size(), 3u);
    EXPECT_EQ(alerts_.shown()[0].messageText, "AVISO IMPORTANTE");
    EXPECT_THAT(alerts_.shown()[1].buttons, ElementsAre("Aceptar", "Cancelar"));
    EXPECT_EQ(alerts_.shown()[2].informativeText,
              "Importación realizada con éxito. Por favor REINICIE la aplicación.");
}

TEST_F(SceneTransfer, ImportStopsAtEveryNo) {
    struct Row {
        const char *name;
        std::optional<std::string> path;
        bool documentsMissing;
        std::size_t alerts;
        const char *printed;
    };
    for (const Row &row : {Row{"panel cancelled", std::nullopt, false, 1, ""},
                           Row{"capital extension", "/tmp/escenas.PRS", false, 1, ""},
                           Row{"no extension", "/tmp/x.prs/escenas", false, 1, ""},
                           Row{"only an extension", "/tmp/.prs", false, 1, ""},
                           Row{"no Documents", "/tmp/escenas.prs", true, 1, "Error 349\n"},
                           Row{"not confirmed", "/tmp/escenas.prs", false, 2, ""}}) {
        support::AnsweredAlerts alerts;
        alerts.accept();  // the first; the next is cancelled
        panels_->openPath = row.path;
        documents_.setDocumentsMissing(row.documentsMissing);
        CaptureStdout();
        AppDelegate().ImportPresets();
        EXPECT_EQ(GetCapturedStdout(), row.printed) << row.name;
        EXPECT_EQ(alerts.shown().size(), row.alerts) << row.name;
        EXPECT_TRUE(shell_->ran.empty()) << row.name;
    }
}

}  // namespace
