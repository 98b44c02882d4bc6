// What is said about a camera and a store, with and without faults.
#include "selfcheck/findings.h"

#include <filesystem>

#include "selfcheck_bench.h"
#include "support/samples.h"

namespace {

using selfcheck::State;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::vector<ManualPreset> tables(std::size_t count) {
    return {count, support::scene("Mesa")};
}

class FindingsTest : public SelfcheckBench {
 protected:
    /// The facts of a healthy camera, for a test to change one of them.
    selfcheck::Facts healthy() {
        plug();
        return examine();
    }

    static State stateOf(const selfcheck::Facts &facts) { return selfcheck::findings(facts).verdict.state; }
};

TEST_F(FindingsTest, AHealthyCameraIsDescribedInUnitsAndDegreesAndNotSaidToObey) {
    auto facts = healthy();
    facts.panTilt.current = selfcheck::FieldValues{-43380, 3599};
    EXPECT_EQ(stateOf(facts), State::information) << "the kernel's driver may have answered from its memory";
    EXPECT_THAT(
        textOf(facts),
        AllOf(
            HasSubstr("[Dato] La cámara está conectada y no se ve ningún problema. Falta saber si obedece."),
            HasSubstr("[Dato] Giro: -43380 (-12,1°), según el sistema"),
            HasSubstr(std::string(model::kRecords.front().ids) + ", bus 1, puerto 1"),
            HasSubstr("De -612000 (-170,0°) a 612000 (170,0°), paso 3600 (1,0°), predeterminado 0 (0,0°)"),
            HasSubstr("De 0 a 1000, paso 1, predeterminado 0."), Not(HasSubstr("[Aviso]")),
            Not(HasSubstr("[Fallo]"))));

    facts.access->holder = usb::Holder::nobody;
    EXPECT_THAT(textOf(facts), AllOf(HasSubstr("[Bien] La cámara contesta y no se ve ningún problema. Falta"),
                                     HasSubstr("[Bien] Giro: ahora -43380 (-12,1°)"),
                                     HasSubstr("[Bien] Inclinación: ahora 3599 (1,0°)")));
}

TEST_F(FindingsTest, ATrialTellsWhetherTheCameraObeys) {
    const auto camera = plug();
    const auto found = examine();
    EXPECT_THAT(
        textOf(tried(found)),
        AllOf(HasSubstr("[Bien] La cámara obedece, y las escenas guardadas se pueden leer."),
              HasSubstr("[Bien] Giro e inclinación: la cámara ha aceptado la orden\n        Ha tardado "),
              HasSubstr("[Bien] Zoom: la cámara ha aceptado la orden")));

    auto slow = tried(found);
    slow.trial->panTilt->duration = slow.trial->zoom->duration = std::chrono::milliseconds(700);
    EXPECT_THAT(textOf(slow),
                AllOf(HasSubstr("[Aviso] La cámara obedece, pero despacio."),
                      HasSubstr("[Bien] Giro e inclinación: la cámara ha"),  // up to two transfers
                      HasSubstr("[Aviso] Zoom: la cámara ha aceptado la orden")));

    camera->refuse({1, 0x0B, 0x01});
    EXPECT_THAT(textOf(tried(found)),
                AllOf(HasSubstr("[Fallo] La cámara no obedece: no ha aceptado la orden."),
                      HasSubstr("[Bien] Giro e inclinación: la cámara ha aceptado"),
                      HasSubstr("[Fallo] Zoom: la cámara ha rechazado la orden")));
    camera->setAnswerDelay(std::chrono::hours(1));
    EXPECT_THAT(textOf(tried(found)), AllOf(HasSubstr("[Fallo] La cámara está conectada, pero no contesta."),
                                            HasSubstr("[Fallo] Zoom: la cámara no ha contestado a tiempo")));
}

TEST_F(FindingsTest, WithoutTheCameraTheVerdictSaysWhatIsThereInstead) {
    EXPECT_THAT(text(), HasSubstr("[Fallo] No se ve ninguna cámara conectada"));

    Options foreign;
    foreign.record.vendorId = 0x046D;
    foreign.record.productId = 0x0001;
    foreign.productName = "Webcam <b>del</b> portátil";
    plug(foreign, 3, {2, 1});
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] No se ve ninguna cámara que este programa sepa mover"),
                              HasSubstr("«Webcam <b>del</b> portátil»"),
                              HasSubstr("046d:0001, bus 3, puerto 2.1"), Not(HasSubstr("Giro"))));

    bus_ = std::make_shared<simulator::SimulatedRegistry>();
    Options headless;
    headless.hasHeader = false;
    plug(headless);
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] La cámara está conectada, pero no se presenta"),
                              HasSubstr("[Fallo] Cámara del aula con una descripción USB incorrecta"),
                              Not(HasSubstr("No está conectada"))));

    selfcheck::Facts blind;
    EXPECT_THAT(textOf(blind), HasSubstr("[Fallo] No se pueden ver los dispositivos USB"));
}

TEST_F(FindingsTest, OfTwoCamerasTheOneThatMovesIsNamed) {
    Options first;
    first.productName = "Delante";
    Options second;
    second.productName = "Detrás";
    const auto still = plug(first, 1, {1});
    plug(second, 1, {2});
    EXPECT_EQ(report().verdict.state, State::warning);
    EXPECT_THAT(text(), AllOf(HasSubstr("pero hay conectada otra cámara del mismo modelo."),
                              HasSubstr("[Aviso] Hay 2 cámaras del mismo modelo"),
                              HasSubstr("Cámara del mismo modelo, que no se mueve: «Delante»"),
                              HasSubstr("Cámara del aula conectada: «Detrás»")));
    EXPECT_TRUE(still->transfers().empty());
    EXPECT_EQ(inspected_, 0x01200000U);
}

TEST_F(FindingsTest, MissingRightsNameTheFileAndTheRemedy) {
    const auto camera = plug();
    bus_->answerOpenWith(camera, usb::Outcome::denied);
    access_->access = usb::Outcome::denied;
    EXPECT_THAT(text(),
                AllOf(HasSubstr("[Fallo] La cámara está conectada, pero este usuario no tiene permiso"),
                      HasSubstr("no tiene permiso para abrir /dev/video0"), HasSubstr("grupo «video»"),
                      HasSubstr("No se ha podido preguntar")));
    EXPECT_TRUE(camera->transfers().empty());

    access_->holder = usb::Holder::nobody;
    access_->backend = usb::Backend::direct;
    access_->path = "/dev/bus/usb/001/004";
    EXPECT_THAT(text(), AllOf(HasSubstr("no tiene permiso para abrir /dev/bus/usb/001/004"),
                              HasSubstr("udev"), Not(HasSubstr("grupo «video»"))));

    access_.reset();
    EXPECT_THAT(text(), HasSubstr("[Fallo] El sistema no ha permitido abrir la cámara"));
}

TEST_F(FindingsTest, DriversAndProgramsAreNamed) {
    plug();
    access_->programs = {{4711, "reunion", true}, {4712, "grabador\xff", false}};
    access_->sawEveryProgram = false;
    EXPECT_THAT(text(), AllOf(HasSubstr("(uvcvideo) gestiona la cámara"),
                              HasSubstr("reunion (proceso 4711, recibiendo imagen)"),
                              HasSubstr("grabador\uFFFD (proceso 4712)"), HasSubstr("otros usuarios")));
    access_->holder = usb::Holder::program;
    access_->holderName = "usbfs";
    access_->access = usb::Outcome::busy;
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] Otro programa se ha quedado con el control"),
                              Not(HasSubstr("No impiden"))));
    access_->holder = usb::Holder::otherDriver;
    access_->holderName = "usbhid";
    access_->backend = usb::Backend::none;
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] Un controlador que no es de vídeo tiene la cámara: usbhid"),
                              Not(HasSubstr("Ciérrelo"))));
    EXPECT_NE(report().verdict.state, State::good);
}

TEST_F(FindingsTest, EveryRefusedRequestIsNamedAndOnlyTheNeededOnesAreFaults) {
    struct Row {
        std::uint8_t code;
        const char *line;
        State verdict;
    };
    for (const Row &row : {Row{0x81, "[Fallo] La cámara no contesta a GET_CUR", State::fault},
                           Row{0x82, "[Aviso] La cámara no contesta a GET_MIN", State::warning},
                           Row{0x83, "[Aviso] La cámara no contesta a GET_MAX", State::warning},
                           Row{0x84, "[Aviso] La cámara no contesta a GET_RES", State::warning},
                           Row{0x86, "[Fallo] La cámara no contesta a GET_INFO", State::fault},
                           Row{0x87, "[Aviso] La cámara no contesta a GET_DEF", State::warning}}) {
        Options options;
        options.refused = {{1, 0x0D, row.code}};
        bus_ = std::make_shared<simulator::SimulatedRegistry>();
        plug(options);
        const std::string told = text();
        EXPECT_THAT(told, AllOf(HasSubstr(row.line), HasSubstr("Zoom: 0, según")));
        EXPECT_EQ(told.find("Giro: 0 (") != std::string::npos, row.code != 0x81) << "others are asked";
        EXPECT_EQ(report().verdict.state, row.verdict) << row.line;
    }
}

TEST_F(FindingsTest, LimitsThatTheKernelCannotReadAreOneFault) {
    const auto sound = healthy();
    auto facts = sound;
    facts.zoom.minimum = facts.zoom.maximum = facts.zoom.resolution = facts.zoom.defaultValue = std::nullopt;
    // The maximum is not asked for when the minimum has failed.
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0x86, 0x82, 0x84, 0x87})
        facts.zoom.failures.push_back({code, usb::Outcome::refused});
    const std::string line = "[Fallo] La cámara rechaza alguna de las lecturas de sus límites";
    EXPECT_THAT(textOf(facts),
                AllOf(HasSubstr(line),
                      HasSubstr("[Dato] Zoom: 0, según el sistema\n        No se saben sus límites."),
                      Not(HasSubstr("no contesta a GET_"))));
    EXPECT_EQ(stateOf(facts), State::fault);

    facts.access->holder = usb::Holder::nobody;
    EXPECT_THAT(textOf(facts),
                AllOf(Not(HasSubstr(line)), HasSubstr("[Aviso] La cámara no contesta a GET_MIN"),
                      HasSubstr("[Fallo] La cámara no contesta a GET_INFO")));
    facts = sound;
    facts.zoom.failures = {{0x86, usb::Outcome::refused}, {0x82, usb::Outcome::refused}};
    EXPECT_THAT(textOf(facts), AllOf(Not(HasSubstr(line)), HasSubstr("GET_MIN"), HasSubstr("GET_INFO")));
}

TEST_F(FindingsTest, ACameraThatFallsSilentIsSaidToBeDead) {
    const auto camera = plug();
    camera->setAnswerDelay(std::chrono::hours(1));
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] La cámara está conectada, pero no contesta."),
                              HasSubstr("no ha contestado a tiempo a GET_CUR"),
                              HasSubstr("[Dato] No se ha podido preguntar a la cámara")));
    camera->setAnswerDelay(std::chrono::milliseconds(0));
    camera->unplugAfter(4);
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] La cámara se ha desconectado durante"),
                              HasSubstr("[Fallo] La cámara se ha desconectado durante la comprobación\n"),
                              HasSubstr("paso desconocido, predeterminado desconocido.")));
}

TEST_F(FindingsTest, ASlowCameraIsAWarningWithItsTime) {
    auto facts = healthy();
    facts.slowest = std::chrono::milliseconds(499);
    EXPECT_THAT(textOf(facts), Not(HasSubstr("despacio")));
    facts.slowest = std::chrono::milliseconds(1200);
    EXPECT_THAT(textOf(facts), HasSubstr("[Aviso] La cámara contesta despacio: hasta 1200 milisegundos"));
    EXPECT_EQ(stateOf(facts), State::warning);

    facts.givenUp = usb::Outcome::timedOut;
    facts.isTooSlow = true;
    facts.zoom = {};
    EXPECT_THAT(textOf(facts), AllOf(HasSubstr("[Aviso] La cámara contesta, pero demasiado despacio"),
                                     HasSubstr("[Aviso] La cámara tarda demasiado en contestar: más de 2000"),
                                     HasSubstr("No se ha podido preguntar"), Not(HasSubstr("[Fallo]"))));
}

TEST_F(FindingsTest, FaultyRangesAreNamedByAxis) {
    auto sound = healthy();
    sound.access->holder = usb::Holder::nobody;
    auto facts = sound;
    facts.panTilt.current = selfcheck::FieldValues{612001, 0};
    EXPECT_THAT(textOf(facts), AllOf(HasSubstr("[Aviso] Giro: el valor actual, 612001 (170,0°), está fuera"),
                                     HasSubstr("[Dato] Giro: ahora"), HasSubstr("[Bien] Inclinación: ahora"),
                                     Not(HasSubstr("Inclinación: el valor"))));
    facts = sound;
    facts.panTilt.current = selfcheck::FieldValues{612000, -108000};  // the limits belong to the range
    EXPECT_EQ(stateOf(facts), State::good);
    facts = sound;
    facts.zoom.defaultValue = selfcheck::FieldValues{1001};
    EXPECT_THAT(textOf(facts), HasSubstr("[Aviso] Zoom: el valor predeterminado, 1001, está fuera"));
    facts = sound;
    facts.panTilt.resolution = selfcheck::FieldValues{3600, 0};
    EXPECT_THAT(textOf(facts), HasSubstr("[Aviso] Inclinación: el paso es 0"));
    facts = sound;
    facts.panTilt.minimum = selfcheck::FieldValues{700000, -108000};
    EXPECT_THAT(textOf(facts), AllOf(HasSubstr("[Fallo] Giro: el mínimo es mayor que el máximo"),
                                     Not(HasSubstr("Giro: el valor actual,"))));
    EXPECT_EQ(stateOf(facts), State::fault);
    facts = sound;
    facts.zoom.maximum = selfcheck::FieldValues{0};
    EXPECT_THAT(textOf(facts), HasSubstr("[Fallo] Zoom: el rango está vacío"));
    facts = sound;
    facts.zoom.maySet = false;
    EXPECT_THAT(textOf(facts), HasSubstr("[Fallo] La cámara dice que este control no se puede cambiar"));
}

TEST_F(FindingsTest, AMissingControlIsAFault) {
    Options options;
    options.hasPanTiltAbs = false;
    plug(options);
    EXPECT_THAT(text(),
                AllOf(HasSubstr("[Fallo] La cámara está conectada, pero le falta algo"),
                      HasSubstr("[Fallo] La cámara no ofrece este control"), HasSubstr("Zoom: 0, según")));
}

TEST_F(FindingsTest, TheStoreIsToldByCentreAndRoom) {
    plug();
    EXPECT_THAT(text(), HasSubstr("[Dato] Todavía no hay escenas guardadas"));
    EXPECT_FALSE(std::filesystem::exists(documents_.path() / "Presets"))
        << "looking must not make the folder";

    putScenes("Norte/Sala 1.presets", tables(3));
    putScenes("Norte/Sala 2.presets", tables(1));
    putScenes("Suelta.presets", tables(2));
    putScenes("Norte/Nueva.presets", tables(0));
    std::filesystem::create_directory(documents_.path() / "Presets" / "Vacío");
    EXPECT_THAT(
        text(),
        AllOf(HasSubstr("6 escenas en 4 ficheros, 2 centros"), HasSubstr("[Bien] Norte / Sala 1: 3 escenas"),
              HasSubstr("[Bien] Norte / Sala 2: 1 escena\n"), HasSubstr("[Bien] Sin grupo / Suelta: 2"),
              HasSubstr("[Dato] Norte / Nueva: sin escenas"), HasSubstr("[Dato] Vacío: sin aulas")));
    EXPECT_EQ(report().verdict.state, State::information);
}

TEST_F(FindingsTest, EachUnreadableFileIsNamedWithItsReason) {
    plug();
    putScenes("Norte/Buena.presets", tables(1));
    const auto empty = put("Norte/Vacia.presets", "");
    put("Norte/Texto.presets", "\xff\xfe");
    std::filesystem::create_directory(documents_.path() / "Presets/Norte/Carpeta.presets");
    std::filesystem::create_symlink("falta", documents_.path() / "Presets/Norte/Enlace.presets");
    put("Norte/Buena.copia.presets", "");
    putScenes("Norte/Buena.vieja.presets", tables(2));
    put("LEEME", "");
    testing::internal::CaptureStdout();
    const std::string told = text();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_THAT(told,
                AllOf(HasSubstr("[Aviso] La cámara está conectada. Hay ficheros"),
                      HasSubstr("[Aviso] Norte / Vacia: el fichero está vacío\n        " + empty.string() +
                                " — El programa muestra esta aula sin escenas. No guarde nada en ella antes "
                                "de recuperar una copia."),
                      HasSubstr("[Aviso] Norte / Texto: el fichero no contiene escenas"),
                      HasSubstr("[Aviso] Norte / Carpeta: no es un fichero"),
                      HasSubstr("[Aviso] Norte / Enlace: es un enlace que no lleva"),
                      HasSubstr("[Aviso] Norte / Buena: otro fichero lleva el nombre"),
                      HasSubstr("Buena.copia.presets — No se puede leer."),
                      HasSubstr("Buena.vieja.presets — Contiene 2 escenas."), HasSubstr("1 escena en 7 "),
                      HasSubstr("[Bien] Norte / Buena: 1 escena"), Not(HasSubstr("[Fallo]")),
                      HasSubstr("[Aviso] No se puede ver lo que hay en una carpeta")));
}

TEST_F(FindingsTest, FilesThatEndTheProgramAreSurvivedAndNamed) {
    plug();
    putScenes("Norte/Buena.presets", tables(1));
    const auto fatal = put("Norte/Mala.presets", support::sample("foreign"));
    EXPECT_THAT(text(), AllOf(HasSubstr("[Fallo] La cámara está conectada, pero el programa no puede"),
                              HasSubstr("[Fallo] Norte / Mala: fichero dañado o de otro programa"),
                              HasSubstr("Mueva este fichero a otra carpeta: " + fatal.string())));

    // Another file's scenes are shown, but this one is read all the same.
    const auto hidden = fatal.parent_path() / "Buena.z.presets";
    std::filesystem::rename(fatal, hidden);
    EXPECT_THAT(text(), HasSubstr("[Fallo] Norte / Buena: fichero dañado"));

    std::filesystem::remove(hidden);
    put("Norte/...", "");
    EXPECT_THAT(text(), HasSubstr("[Fallo] Un fichero cuyo nombre son solo puntos"));

    documents_.setDocumentsMissing(true);
    EXPECT_THAT(text(), HasSubstr("[Fallo] Este usuario no tiene carpeta de documentos"));
}

}  // namespace
