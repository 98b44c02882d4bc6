// What is said about a camera and a store, with and without faults.
#include "selfcheck/findings.h"

#include <filesystem>

#include "selfcheck_bench.h"
#include "support/samples.h"

namespace {

using selfcheck::ControlFacts;
using selfcheck::Facts;
using selfcheck::FieldValues;
using support::kPanTiltAbs;
using support::kTerminal;
using usb::Outcome;
using Stage = selfcheck::OrderFacts::Stage;
using Pieces = std::vector<std::string>;
using FindingsTest = SelfcheckBench;

const std::string kLacks = "[Fallo] La cámara está conectada, pero le falta algo para poder moverla.";
const std::string kIds = std::string(model::kRecords.front().ids);
const std::string kOdd = "[Aviso] La cámara está conectada, pero hay algo en ella que no es normal.";

std::vector<ManualPreset> tables(std::size_t count) {
    return {count, support::scene("Mesa")};
}

TEST_F(FindingsTest, AHealthyCameraIsDescribedInUnitsAndDegreesAndNotSaidToObey) {
    auto facts = examine();
    facts.panTilt.current = FieldValues{-43380, 3599};
    expectSaid(facts, {"[Dato] La cámara está conectada y no se ve ningún problema. Falta saber si obedece.",
                       "[Dato] Giro: -43380 (-12,1°), según el sistema", kIds + ", bus 1, puerto 1.\n",
                       "De -612000 (-170,0°) a 612000 (170,0°), paso 3600 (1,0°), predeterminado 0 (0,0°)",
                       "De 0 a 1000, paso 1, predeterminado 0.", "![Aviso]", "![Fallo]", "!No impiden"});
    facts.access->holder = usb::Holder::nobody;
    facts.panTilt.current = FieldValues{612000, -108000};  // the limits belong to the range
    facts.slowest = std::chrono::milliseconds(499);
    expectSaid(facts, {"[Bien] La cámara contesta y no se ve ningún problema. Falta", "!despacio",
                       "[Bien] Giro: ahora 612000 (170,0°)", "[Bien] Inclinación: ahora -108000 (-30,0°)"});
    facts.slowest = std::chrono::milliseconds(500);
    expectSaid(facts, {"[Aviso] La cámara contesta, pero hay algo que mirar en cómo se llega a ella.",
                       "[Aviso] La cámara contesta despacio: hasta 500 milisegundos"});
}

TEST_F(FindingsTest, ATrialTellsWhetherTheCameraObeys) {
    struct Row {
        Stage stage;
        Outcome outcome;
        int duration;  // ms
        const char *verdict;
        const char *zoom;
    };
    auto facts = tried(examine());
    for (const Row &row :
         {Row{Stage::ordering, Outcome::done, 499, "[Bien] La cámara obedece, y",
              "[Bien] Zoom: la cámara ha ac"},
          Row{Stage::ordering, Outcome::done, 500, "[Aviso] La cámara obedece, pero",
              "[Aviso] Zoom: la cámara ha"},
          Row{Stage::ordering, Outcome::failed, 0, "[Fallo] La cámara no obedece",
              "Zoom: la cámara ha rechazado"},
          Row{Stage::reading, Outcome::refused, 0, "no ha dicho su posición", "Zoom: no se ha podido leer"},
          Row{Stage::reading, Outcome::timedOut, 0, "pero no contesta.",
              "Zoom: la cámara no ha contestado a"},
          Row{Stage::ordering, Outcome::disconnected, 0, "se ha desconectado", "Zoom: la cámara ya no está"},
          Row{Stage::reading, Outcome::denied, 0, "no tiene permiso", "Zoom: el sistema no ha permitido"},
          Row{Stage::reading, Outcome::busy, 0, "la tiene ocupada.", "Zoom: otro programa tiene ocupada"},
          Row{Stage::outsideRange, Outcome::done, 0, "[Bien] La cámara obedece",
              "[Dato] Zoom: no se ha pro"}}) {
        facts.trial->zoom = {row.stage, row.outcome, std::chrono::milliseconds(row.duration)};
        expectSaid(facts,
                   {row.verdict, row.zoom, "[Bien] Giro e inclinación: la cámara ha aceptado la orden"});
    }
    // The kernel's driver may make two transfers of an order to pan and tilt.
    facts.trial->panTilt->duration = std::chrono::milliseconds(999);
    expectSaid(facts, {"[Bien] La cámara obedece", "Ha tardado 999 milisegundos."});
    facts.access->holder = usb::Holder::nobody;
    expectSaid(facts, {"[Aviso] La cámara obedece, pero despacio."});
    facts.trial->panTilt.reset();
    expectSaid(facts, {"[Bien] La cámara contesta y no se ve ningún problema. Falta", "!obedece, "});
}

TEST_F(FindingsTest, WithoutTheCameraTheVerdictSaysWhatIsThereInstead) {
    bus().unplug(room_->camera);
    expectSaid(examine(), {"[Fallo] No se ve ninguna cámara conectada", "[Fallo] No está conectada la cámara",
                           "Se busca la identificación " + kIds, "!Giro", "!Acceso"});
    simulator::CameraOptions foreign;
    foreign.record.vendorId = 0x0123;
    foreign.record.productId = 0x00AB;
    foreign.productName = "Webcam <b>del</b> portátil";
    plugAnother(foreign, {2, 1, 3, 4, 5, 15});
    expectSaid(examine(), {"la que hay conectada es de otro modelo.",
                           "[Dato] Otra cámara, que este programa no mueve: «Webcam <b>del</b> portátil»",
                           "0123:00ab, bus 1, puerto 2.1.3.4.5.15."});
    foreign.productName = "";
    plugAnother(foreign, {3});
    expectSaid(examine(), {"las que hay conectadas son de otros modelos.", "no mueve: sin nombre"});
    simulator::CameraOptions headless;
    headless.hasHeader = false;
    plug(headless);
    expectSaid(examine(), {"[Fallo] La cámara está conectada, pero no se presenta",
                           "[Fallo] Cámara del aula con una descripción USB", "!No está conectada"});
    expectSaid(Facts(), {"[Fallo] No se pueden ver los dispositivos USB de este equipo.", "!ninguna cámara"});
}

TEST_F(FindingsTest, OfSeveralCamerasTheOneThatMovesIsNamed) {
    simulator::CameraOptions last;
    last.productName = "Detrás";
    plugAnother(last, {2});
    expectSaid(examine(),
               {"[Aviso] La cámara está conectada, pero hay conectada otra cámara", "[Aviso] Hay 2",
                "[Dato] Cámara del mismo modelo, que no se mueve: «Cámara PTZ simulada»",
                "[Bien] Cámara del aula conectada: «Detrás»"});
    EXPECT_TRUE(camera().transfers().empty());
    plugAnother({}, {3});
    expectSaid(examine(), {"pero hay conectadas otras cámaras", "[Aviso] Hay 3 cámaras"});
}

TEST_F(FindingsTest, HowTheCameraIsReachedIsToldWithItsRemedy) {
    using enum usb::Holder;
    using enum usb::Backend;
    const std::string node = "/dev/video0";
    const std::string usb = "/dev/bus/usb/001/004";
    struct Row {
        usb::Holder holder;
        usb::Backend backend;
        std::string path;
        Outcome access;
        Pieces said;
    };
    auto facts = examine();
    facts.access->holderName = "modulo";
    for (const Row &row :
         {Row{cameraDriver,
              driver,
              node,
              Outcome::done,
              {"del sistema (modulo) gestiona", "puede abrir " + node}},
          Row{cameraDriver,
              driver,
              node,
              Outcome::denied,
              {"[Fallo] Este usuario no", node, "grupo «video»"}},
          Row{nobody, direct, usb, Outcome::denied, {"[Fallo] Este usuario no tiene", usb, "(udev)"}},
          Row{nobody, direct, usb, Outcome::failed, {"[Fallo] No se puede abrir " + usb}},
          Row{program,
              direct,
              usb,
              Outcome::busy,
              {"quedado con el control de la cámara (modulo)", "ocupado " + usb}},
          Row{otherDriver,
              none,
              "",
              Outcome::busy,
              {"no es de vídeo tiene la cámara: modulo", "!ningún fichero"}},
          Row{otherDriver, none, "", Outcome::failed, {"no es de vídeo", "no ofrece ningún fichero"}},
          Row{otherDriver,
              driver,
              node,
              Outcome::busy,
              {"desconocido gestiona la cámara: modulo", "ocupado " + node}}}) {
        facts.access->holder = row.holder;
        facts.access->backend = row.backend;
        facts.access->path = row.path;
        facts.access->access = row.access;
        expectSaid(facts, row.said);
    }
    facts.access->programs = {{4711, "reunion", true}, {4712, "grabador\xff", false}};
    expectSaid(facts,
               {"reunion (proceso 4711, recibiendo imagen), grabador\uFFFD (proceso 4712)\n", "!impiden"});
    facts.access->holder = cameraDriver;
    facts.access->sawEveryProgram = false;
    expectSaid(facts, {"puede haber alguno más. No impiden moverla.\n"});
    facts.access.reset();
    expectSaid(facts, {"[Dato] El sistema no dice cómo"});
}

TEST_F(FindingsTest, ACameraThatCannotBeAskedSaysWhyOnce) {
    auto facts = examine();
    facts.panTilt = facts.zoom = {};
    const std::vector<std::pair<Outcome, Pieces>> rows{
        {Outcome::denied, {"este usuario no tiene permiso", "[Fallo] El sistema no ha permitido abrir"}},
        {Outcome::busy, {"la tiene ocupada.", "[Fallo] Otro programa o controlador tiene ocupada"}},
        {Outcome::failed, {"pero no se puede abrir.", "[Fallo] No se ha podido abrir la cámara\n"}}};
    for (const auto &[reason, said] : rows) {
        facts.givenUp = reason;
        expectSaid(facts, said);
        expectSaid(facts, {"[Dato] No se ha podido preguntar a la cámara", "!no ofrece"});
    }
    facts.access->access = Outcome::denied;
    expectSaid(facts,
               {"[Fallo] Este usuario no tiene permiso para abrir /dev/video0", "!No se ha podido abrir"});
    facts.givenUp = Outcome::disconnected;
    facts.zoom.failures = {{0x87, Outcome::disconnected}};
    expectSaid(facts, {"[Fallo] La cámara se ha desconectado al preguntarle GET_DEF", "!comprobación\n"});
}

TEST_F(FindingsTest, EveryRefusedRequestIsNamedAndOnlyTheNeededOnesAreFaults) {
    const std::vector<std::pair<std::uint8_t, Pieces>> rows{
        {0x81, {kLacks, "[Fallo] La cámara no contesta a GET_CUR", "Giro: no se sabe su valor actual"}},
        {0x82, {kOdd, "[Aviso] La cámara no contesta a GET_MIN", "Mínimo y máximo desconocidos, paso 3600"}},
        {0x83, {kOdd, "[Aviso] La cámara no contesta a GET_MAX", "Mínimo y máximo desconocidos, paso 3600"}},
        {0x84, {kOdd, "[Aviso] La cámara no contesta a GET_RES", "(170,0°), paso desconocido, pre"}},
        {0x86, {kLacks, "[Fallo] La cámara no contesta a GET_INFO", "De -612000"}},
        {0x87, {kOdd, "[Aviso] La cámara no contesta a GET_DEF", "predeterminado desconocido."}}};
    for (const auto &[code, said] : rows) {
        plug({}).refuse({kTerminal, kPanTiltAbs, code});
        expectSaid(examine(), said);
        expectSaid(examine(), {"Zoom: 0, según"});
    }
    simulator::CameraOptions fixed;
    fixed.hasPanTiltAbs = false;
    plug(fixed);
    expectSaid(examine(), {kLacks, "[Fallo] La cámara no ofrece este control", "Zoom: 0, según"});
    fixed.hasZoomAbs = false;
    plug(fixed);
    expectSaid(examine(), {"[Fallo] La cámara está conectada, pero no ofrece ni giro ni zoom."});
}

TEST_F(FindingsTest, LimitsThatTheKernelCannotReadAreOneFault) {
    auto facts = examine();
    facts.zoom.minimum = facts.zoom.maximum = facts.zoom.resolution = facts.zoom.defaultValue = std::nullopt;
    // The maximum is not asked for when the minimum has failed.
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0x86, 0x82, 0x84, 0x87})
        facts.zoom.failures.push_back({code, Outcome::refused});
    const std::string line = "[Fallo] La cámara rechaza alguna de las lecturas de sus límites";
    expectSaid(facts,
               {kLacks, line, "!no contesta a GET_", "según el sistema\n        No se saben sus límites."});
    facts.access->holder = usb::Holder::nobody;
    expectSaid(facts, {"!" + line, "[Aviso] La cámara no contesta a GET_MIN", "[Dato] Zoom: ahora 0\n"});
    facts.access->holder = usb::Holder::cameraDriver;
    facts.zoom.failures[0].outcome = Outcome::timedOut;
    expectSaid(facts, {"!" + line, "[Fallo] La cámara no ha contestado a tiempo a GET_INFO", "GET_MIN"});
}

TEST_F(FindingsTest, WhatIsNotNormalInACameraIsNamedByAxis) {
    struct Row {
        ControlFacts Facts::*control;
        std::optional<FieldValues> ControlFacts::*slot;
        FieldValues values;
        Pieces said;
    };
    const auto healthy = examine();
    for (const Row &row :
         {Row{&Facts::panTilt,
              &ControlFacts::current,
              {612001, 0},
              {kOdd, "[Aviso] Giro: el valor actual, 612001 (170,0°), está fuera", "!Inclinación: el"}},
          Row{&Facts::panTilt,
              &ControlFacts::resolution,
              {3600, 0},
              {kOdd, "[Aviso] Inclinación: el paso es 0", "!Giro: el"}},
          Row{&Facts::panTilt,
              &ControlFacts::minimum,
              {700000, 0},
              {kLacks, "[Fallo] Giro: el mínimo es mayor que", "!Giro: el valor"}},
          Row{&Facts::zoom,
              &ControlFacts::defaultValue,
              {1001},
              {kOdd, "[Aviso] Zoom: el valor predeterminado, 1001, está fuera"}},
          Row{&Facts::zoom,
              &ControlFacts::maximum,
              {0},
              {kLacks, "[Fallo] Zoom: el rango está vacío", "!Zoom: el valor"}}}) {
        auto facts = healthy;
        facts.*row.control.*row.slot = row.values;
        expectSaid(facts, row.said);
        facts.access->holder = usb::Holder::nobody;
        expectSaid(facts, {"[Dato] ", "[Bien] "});
    }
    simulator::CameraOptions locked;
    locked.readOnly = true;
    plug(locked);
    expectSaid(examine(), {kLacks, "[Fallo] La cámara dice que este control no se puede cambiar"});
}

TEST_F(FindingsTest, TheStoreIsToldByCentreAndRoom) {
    expectSaid(examine(), {"[Dato] Todavía no hay escenas guardadas", store().string()});
    EXPECT_FALSE(std::filesystem::exists(store())) << "looking must not make the folder";

    putScenes("Norte/Sala 1.presets", tables(3));
    putScenes("Norte/Sala 2.presets", tables(1));
    putScenes("Suelta.presets", tables(2));
    putScenes("Norte/Nueva.presets", tables(0));
    storeCentre("Vacío");
    expectSaid(examine(), {"ningún problema", "6 escenas en 4 ficheros, 2 centros", "[Dato] Vacío: sin aulas",
                           "[Bien] Norte / Sala 1: 3 escenas", "[Bien] Norte / Sala 2: 1 escena\n",
                           "[Bien] Sin grupo / Suelta: 2", "[Dato] Norte / Nueva: sin escenas"});
}

TEST_F(FindingsTest, EachUnreadableFileIsNamedWithItsReason) {
    putScenes("Norte/Buena.presets", tables(1));
    const auto empty = put("Norte/Vacia.presets", "");
    put("Norte/Texto.presets", "\xff\xfe");
    std::filesystem::create_directory(store() / "Norte/Carpeta.presets");
    std::filesystem::create_symlink("falta", store() / "Norte/Enlace.presets");
    put("Norte/Buena.copia.presets", "");
    putScenes("Norte/Buena.vieja.presets", tables(2));
    put("LEEME", "");
    testing::internal::CaptureStdout();
    const auto facts = examine();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    expectSaid(
        facts,
        {"[Aviso] La cámara está conectada. Hay ficheros", "1 escena en 7 ", "![Fallo]",
         "[Aviso] Norte / Vacia: el fichero está vacío\n        " + empty.string() + " — El ",
         "[Aviso] Norte / Texto: el fichero no contiene escenas", "[Aviso] Norte / Carpeta: no es un fichero",
         "[Aviso] Norte / Enlace: es un enlace que no lleva",
         "[Aviso] Norte / Buena: otro fichero lleva el nombre", "Buena.copia.presets — No se puede leer.",
         "Buena.vieja.presets — Contiene 2 escenas.", "[Bien] Norte / Buena: 1 escena",
         "[Aviso] No se puede ver lo que hay en una carpeta"});
}

TEST_F(FindingsTest, FilesThatEndTheProgramAreSurvivedAndNamed) {
    putScenes("Norte/Buena.presets", tables(1));
    const auto fatal = put("Norte/Mala.presets", support::sample("foreign"));
    expectSaid(examine(), {"[Fallo] La cámara está conectada, pero el programa no puede",
                           "[Fallo] Norte / Mala: fichero dañado o de otro programa",
                           "Mueva este fichero a otra carpeta: " + fatal.string()});
    // Another file's scenes are shown, but this one is read all the same.
    const auto hidden = fatal.parent_path() / "Buena.z.presets";
    std::filesystem::rename(fatal, hidden);
    expectSaid(examine(), {"[Fallo] Norte / Buena: fichero dañado"});

    std::filesystem::remove(hidden);
    const auto dots = put("Norte/...", "");
    expectSaid(examine(),
               {"[Fallo] Un fichero cuyo nombre son solo puntos", "nombre: " + dots.string() + "\n"});
    documents_.setDocumentsMissing(true);
    expectSaid(examine(), {"[Fallo] Este usuario no tiene carpeta de documentos"});
}

}  // namespace
