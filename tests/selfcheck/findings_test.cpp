// What is said about a camera and a store, with and without faults; and that the page in docs/ says the same.
#include "selfcheck/findings.h"

#include <filesystem>
#include <tuple>

#include "selfcheck/sentence_page.h"
#include "selfcheck_bench.h"
#include "support/samples.h"

namespace {

using selfcheck::FieldValues;
using namespace support;
using Options = simulator::CameraOptions;
using FindingsTest = SelfcheckBench;
using namespace std::chrono_literals;
using enum usb::Outcome;

const std::string kIds(model::kRecords.front().ids);
const std::string kLacks = "[Fallo] La cámara está conectada, pero le falta algo para poder moverla.";
const std::string kOdd = "[Aviso] La cámara está conectada, pero hay algo en ella que no es normal.";

std::vector<ManualPreset> tables(std::size_t count) {
    return {count, scene("Mesa")};
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
    facts.slowest = 499ms;
    expectSaid(facts, {"[Bien] La cámara contesta y no se ve ningún problema. Falta", "!despacio",
                       "[Bien] Giro: ahora 612000 (170,0°)", "[Bien] Inclinación: ahora -108000 (-30,0°)"});
    facts.slowest = 500ms;
    expectSaid(facts, {"[Aviso] La cámara contesta, pero hay algo que mirar en cómo se llega a ella.",
                       "[Aviso] La cámara contesta despacio: hasta 500 milisegundos"});
}

TEST_F(FindingsTest, ATrialTellsWhetherTheCameraObeys) {
    using enum selfcheck::OrderFacts::Stage;
    auto facts = tried(examine());
    const std::vector<std::tuple<selfcheck::OrderFacts, const char *, const char *>> rows{
        {{ordering, done, 499ms}, "[Bien] La cámara obedece, y", "[Bien] Zoom: la cámara ha a"},
        {{ordering, done, 500ms}, "[Aviso] La cámara obedece,", "[Aviso] Zoom: la cámara ha a"},
        {{ordering, failed, {}}, "[Fallo] La cámara no obedece", "Zoom: la cámara ha rechazado"},
        {{reading, refused, {}}, "no ha dicho su posición", "Zoom: no se ha podido leer"},
        {{reading, timedOut, {}}, "pero no contesta.", "Zoom: la cámara no ha contestado a"},
        {{ordering, disconnected, {}}, "se ha desconectado", "Zoom: la cámara ya no está"},
        {{reading, denied, {}}, "no tiene permiso", "Zoom: el sistema no ha permitido"},
        {{reading, busy, {}}, "la tiene ocupada.", "Zoom: otro programa tiene ocupada"},
        {{outsideRange, done, {}}, "[Bien] La cámara obedece", "[Dato] Zoom: no se ha probado"}};
    for (const auto &[order, verdict, line] : rows) {
        facts.trial->zoom = order;
        expectSaid(facts, {verdict, line, "[Bien] Giro e inclinación: la cámara ha aceptado"});
    }
    // The kernel's driver may make two transfers of an order to pan and tilt.
    facts.trial->panTilt->duration = 999ms;
    expectSaid(facts, {"[Bien] La cámara obedece", "Ha tardado 999 milisegundos."});
    facts.access->holder = usb::Holder::nobody;
    expectSaid(facts, {"[Aviso] La cámara obedece, pero despacio."});
    facts.trial->panTilt.reset();
    expectSaid(facts, {"[Bien] La cámara contesta y no se ve ningún problema. Falta", "!obedece, "});
}

TEST_F(FindingsTest, OfAllCamerasOnTheBusTheOneThatMovesIsNamed) {
    expectSaid(selfcheck::Facts(),
               {"[Fallo] No se pueden ver los dispositivos USB de este", "!ninguna cámara"});
    bus().unplug(room_->camera);
    expectSaid(examine(), {"[Fallo] No se ve ninguna cámara conectada", "[Fallo] No está conectada la cámara",
                           "Se busca la identificación " + kIds, "!Giro", "!Acceso"});
    Options foreign;
    foreign.record.vendorId = 0x0123;
    foreign.productName = "";
    plugAnother(foreign, {2, 1, 3, 4, 5, 15});
    expectSaid(examine(), {"la que hay conectada es de otro modelo.",
                           "Identificación 0123:", "bus 1, puerto 2.1.3.4.5.15.",
                           "[Dato] Otra cámara, que este programa no mueve: sin nombre"});
    plugAnother(foreign, {3});
    expectSaid(examine(), {"las que hay conectadas son de otros modelos."});

    const auto first = plugAnother({}, {4});
    plugAnother({}, {5});
    expectSaid(
        examine(),
        {"[Aviso] La cámara está conectada, pero hay conectada otra cámara", "[Aviso] Hay 2",
         "que no se mueve: «Cámara PTZ simulada»\n        Identificación " + kIds + ", bus 1, puerto 4.",
         "[Bien] Cámara del aula conectada: «Cámara PTZ simulada»"});
    EXPECT_TRUE(first->transfers().empty());
    EXPECT_EQ(inspected_, usb::locationId(1, std::vector<std::uint8_t>{5}));
    plugAnother({}, {6});
    expectSaid(examine(), {"pero hay conectadas otras cámaras", "[Aviso] Hay 3 cámaras"});
}

TEST_F(FindingsTest, HowTheCameraIsReachedIsToldWithItsRemedy) {
    using enum usb::Holder;
    using enum usb::Backend;
    auto facts = examine();
    const std::vector<std::tuple<usb::Holder, usb::Backend, usb::Outcome, const char *, const char *>> rows{
        {cameraDriver, driver, done, "de vídeo del sistema (mod) gestiona", "usuario puede abrir /dev/x"},
        {cameraDriver, driver, denied, "no tiene permiso para abrir /dev/x", "grupo «video»"},
        {nobody, direct, denied, "[Bien] Ningún controlador", "(udev)"},
        {nobody, direct, failed, "[Bien] Ningún controlador", "[Fallo] No se puede abrir /dev/x"},
        {program, direct, busy, "[Fallo] Otro programa se ha", "[Fallo] Otro programa tiene ocupado"},
        {otherDriver, none, busy, "no es de vídeo tiene la cámara: mod", "!no ofrece ningún fichero"},
        {otherDriver, none, failed, "no es de vídeo tiene la cámara: mod", "no ofrece ningún fichero"},
        {otherDriver, driver, busy, "[Aviso] Un controlador desconocido", "tiene ocupado /dev/x"}};
    for (const auto &[holder, backend, access, holding, file] : rows) {
        facts.access = {0, holder, "mod", backend, backend == none ? "" : "/dev/x", access, {}, true};
        expectSaid(facts, {holding, file});
    }
    facts.access->programs = {{4711, "reunion", true}, {4712, "grabador\xff", false}};
    expectSaid(facts, {"reunion (proceso 4711, recibiendo imagen), grabador\uFFFD (proceso 4712)\n"});
    facts.access->holder = cameraDriver;
    facts.access->sawEveryProgram = false;
    expectSaid(facts, {"puede haber alguno más. No impiden moverla.\n"});
    facts.access.reset();
    expectSaid(facts, {"[Dato] El sistema no dice cómo"});
}

TEST_F(FindingsTest, ACameraThatCannotBeAskedSaysWhyOnce) {
    auto facts = examine();
    facts.panTilt = facts.zoom = {};
    const std::vector<std::pair<usb::Outcome, Pieces>> rows{
        {denied, {"este usuario no tiene permiso", "[Fallo] El sistema no ha permitido abrir"}},
        {busy, {"la tiene ocupada.", "[Fallo] Otro programa o controlador tiene ocupada"}},
        {failed, {"pero no se puede abrir.", "[Fallo] No se ha podido abrir la cámara\n"}}};
    for (const auto &[reason, said] : rows) {
        facts.givenUp = reason;
        expectSaid(facts, said);
        expectSaid(facts, {"[Dato] No se ha podido preguntar a la cámara", "!no ofrece"});
    }
    facts.access->access = denied;
    expectSaid(facts, {"[Fallo] Este usuario no tiene permiso para abrir", "!No se ha podido abrir"});
    facts.givenUp = disconnected;
    facts.zoom.failures = {{0x87, disconnected}};
    expectSaid(facts, {"[Fallo] La cámara se ha desconectado al preguntarle GET_DEF", "!comprobación\n"});
}

TEST_F(FindingsTest, EveryRefusedRequestIsNamedAndOnlyTheNeededOnesAreFaults) {
    const std::vector<std::pair<std::uint8_t, Pieces>> rows{
        {0x81,
         {kLacks, "[Fallo] La cámara no contesta a GET_CUR", "Giro: no se sabe su valor", "Zoom: 0, según"}},
        {0x82, {kOdd, "[Aviso] La cámara no contesta a GET_MIN", "Mínimo y máximo desconocidos, paso 3600"}},
        {0x83, {kOdd, "[Aviso] La cámara no contesta a GET_MAX", "Mínimo y máximo desconocidos, paso 3600"}},
        {0x84, {kOdd, "[Aviso] La cámara no contesta a GET_RES", "(170,0°), paso desconocido, pre"}},
        {0x86, {kLacks, "[Fallo] La cámara no contesta a GET_INFO", "De -612000"}},
        {0x87, {kOdd, "[Aviso] La cámara no contesta a GET_DEF", "predeterminado desconocido."}}};
    for (const auto &[code, said] : rows) {
        plug({}).refuse({kTerminal, kPanTiltAbs, code});
        expectSaid(examine(), said);
    }
}

TEST_F(FindingsTest, WhatIsNotNormalInACameraIsNamed) {
    const std::vector<std::pair<bool Options::*, Pieces>> rows{
        {&Options::hasHeader, {"pero no se presenta", "[Fallo] Cámara del aula con una descripción USB"}},
        {&Options::hasPanTiltAbs, {kLacks, "[Fallo] La cámara no ofrece este control", "Zoom: 0, según"}},
        {&Options::readOnly, {kLacks, "[Fallo] La cámara dice que este control no se puede cambiar"}},
        {&Options::reversedRange, {kLacks, "De 612000 (170,0°) a -6", "[Fallo] Giro: el mínimo es mayor"}},
        {&Options::zeroResolution, {kOdd, "[Aviso] Inclinación: el paso es 0", "[Aviso] Zoom: el paso es 0"}},
        {&Options::outsideRange, {kOdd, "[Aviso] Giro: el valor actual, 648000 (180,0°), está fuera"}},
        {&Options::shortAnswers,
         {kLacks, "[Fallo] Ha fallado la petición GET_C", "[Aviso] Ha fallado la peti"}}};
    for (const auto &[fault, said] : rows) {
        Options options;
        options.*fault = !(options.*fault);
        plug(options);
        expectSaid(examine(), said);
    }
    Options fixed;
    fixed.hasPanTiltAbs = fixed.hasZoomAbs = false;
    plug(fixed);
    expectSaid(examine(), {"[Fallo] La cámara está conectada, pero no ofrece ni giro ni zoom."});

    plug({});
    auto facts = examine();
    facts.access->holder = usb::Holder::nobody;
    facts.panTilt.current = FieldValues{612001, 0};
    expectSaid(facts, {"[Dato] Giro: ahora", "[Bien] Inclinación: ahora", "!Inclinación: el"});
    facts.panTilt.defaultValue = FieldValues{0, -108001};
    expectSaid(facts, {"[Aviso] Inclinación: el valor predeterminado, -108001 (-30,0°), está fuera"});
    facts.zoom.maximum = FieldValues{0};
    expectSaid(facts, {"[Fallo] Zoom: el rango está vacío", "!Zoom: el valor"});
}

TEST_F(FindingsTest, LimitsThatTheKernelCannotReadAreOneFault) {
    auto facts = examine();
    facts.zoom.minimum = facts.zoom.maximum = facts.zoom.resolution = facts.zoom.defaultValue = std::nullopt;
    // The maximum is not asked for when the minimum has failed.
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0x86, 0x82, 0x84, 0x87})
        facts.zoom.failures.push_back({code, refused});
    const std::string line = "[Fallo] La cámara rechaza alguna de las lecturas de sus límites";
    expectSaid(facts,
               {kLacks, line, "!no contesta a GET_", "según el sistema\n        No se saben sus límites."});
    auto direct = facts;
    direct.access->holder = usb::Holder::nobody;
    expectSaid(direct, {"!" + line, "[Aviso] La cámara no contesta a GET_MIN", "[Dato] Zoom: ahora 0\n"});
    facts.zoom.failures[0].outcome = timedOut;
    expectSaid(facts, {"!" + line, "[Fallo] La cámara no ha contestado a tiempo a GET_INFO", "GET_MIN"});
}

TEST_F(FindingsTest, TheStoreIsToldByCentreAndRoomAndEachUnreadableFileWithItsReason) {
    expectSaid(examine(), {"\nEscenas guardadas\n[Dato] Todavía no hay escenas", store().string()});
    EXPECT_FALSE(std::filesystem::exists(store())) << "looking must not make the folder";

    putScenes("Norte/Sala 1.presets", tables(3));
    putScenes("Norte/Sala 2.presets", tables(1));
    putScenes("Suelta.presets", tables(2));
    putScenes("Norte/Nueva.presets", tables(0));
    storeCentre("Vacío");
    expectSaid(examine(), {"ningún problema", "6 escenas en 4 ficheros, 2 centros", "[Dato] Vacío: sin aulas",
                           "[Bien] Norte / Sala 1: 3 escenas", "[Bien] Norte / Sala 2: 1 escena\n",
                           "[Bien] Sin grupo / Suelta: 2", "[Dato] Norte / Nueva: sin escenas"});

    const auto empty = put("Norte/Vacia.presets", "");
    put("Norte/Texto.presets", "\xff\xfe");
    std::filesystem::create_directory(store() / "Norte/Carpeta.presets");
    std::filesystem::create_symlink("falta", store() / "Norte/Enlace.presets");
    put("Norte/Sala 1.copia.presets", "");
    putScenes("Norte/Sala 1.vieja.presets", tables(2));
    put("LEEME", "");
    testing::internal::CaptureStdout();
    const auto facts = examine();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    expectSaid(
        facts,
        {"[Aviso] La cámara está conectada. Hay ficheros", "6 escenas en 10 ", "![Fallo]",
         "[Aviso] Norte / Vacia: el fichero está vacío\n        " + empty.string() + " — El ",
         "[Aviso] Norte / Texto: el fichero no contiene escenas", "[Aviso] Norte / Carpeta: no es un fichero",
         "[Aviso] Norte / Enlace: es un enlace que", "[Aviso] Norte / Sala 1: otro fichero lleva el nombre",
         "[Bien] Norte / Sala 1: 3 ", "copia.presets — No se puede leer.",
         "vieja.presets — Contiene 2 escenas.", "[Aviso] No se puede ver lo que hay en una carpeta"});
    auto locked = facts;
    for (auto &file : locked.store.files) file.systemError = EACCES;
    expectSaid(locked, {"Norte / Enlace: este usuario no tiene permiso para leer el fichero"});
}

TEST_F(FindingsTest, FilesThatEndTheProgramAreSurvivedAndNamed) {
    putScenes("{Norte}/Buena.presets", tables(1));
    const auto fatal = put("{Norte}/Mala.presets", sample("foreign"));
    expectSaid(examine(), {"[Fallo] La cámara está conectada, pero el programa no puede",
                           "[Fallo] {Norte} / Mala: fichero dañado o de otro programa",
                           "Mueva este fichero a otra carpeta: " + fatal.string()});
    // Another file's scenes are shown, but this one is read all the same.
    const auto hidden = fatal.parent_path() / "Buena.z.presets";
    std::filesystem::rename(fatal, hidden);
    expectSaid(examine(), {"[Fallo] {Norte} / Buena: fichero dañado"});

    std::filesystem::remove(hidden);
    const auto dots = put("{Norte}/...", "");
    expectSaid(examine(),
               {"[Fallo] Un fichero cuyo nombre son solo puntos", "nombre: " + dots.string() + "\n"});
    documents_.setDocumentsMissing(true);
    expectSaid(examine(), {"[Fallo] Este usuario no tiene carpeta de documentos"});
}

TEST(SentencesTest, ThePageHasTheProgramsWordsToTheByte) {
    const std::string page = contentOf(ZEL_TEST_DATA "/../../docs/diagnostico.md");
    EXPECT_EQ(selfcheck::withSentences(page), page) << "ninja update_diagnosis_page writes it anew";
    for (const char *comment : {"<!-- escenas -->", "<!-- / -->"}) {
        std::string without = page;
        without.erase(without.rfind(comment), std::string(comment).size());
        EXPECT_FALSE(selfcheck::withSentences(without)) << comment;
    }
}

}  // namespace
