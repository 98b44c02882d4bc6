// Which cameras there are, and how the system lets us to the one that is moved.

#include <algorithm>
#include <cstdio>

#include "model/camera_models.h"
#include "scenes/utf8.h"
#include "selfcheck/findings.h"

namespace selfcheck {
namespace {

/// "vvvv:pppp", hexadecimal.
std::string idsText(std::uint16_t vendorId, std::uint16_t productId) {
    char ids[16];
    std::snprintf(ids, sizeof ids, "%04x:%04x", unsigned{vendorId}, unsigned{productId});
    return ids;
}

/// Of every model, with "o" between them.
std::string supportedIds() {
    std::string list;
    for (const model::Record &record : model::kRecords)
        list.append(list.empty() ? "" : " o ").append(record.ids);
    return list;
}

/// "bus 1, puerto 2.1".
std::string placeOf(const CameraFacts &camera) {
    if (!camera.locationId) return "lugar desconocido";
    std::string ports;
    for (int shift = 20; shift >= 0; shift -= 4) {
        const std::uint32_t port = (*camera.locationId >> shift) & 0xFu;
        if (port == 0) break;
        ports += (ports.empty() ? "" : ".") + std::to_string(port);
    }
    return "bus " + std::to_string(*camera.locationId >> 24) + ", puerto " + (ports.empty() ? "?" : ports);
}

std::string nameOf(const CameraFacts &camera) {
    return camera.name.empty() ? "sin nombre" : "«" + scenes::repairUtf8(camera.name) + "»";
}

Line cameraLine(const CameraFacts &camera, bool isMoved) {
    const std::string detail =
        "Identificación " + idsText(camera.vendorId, camera.productId) + ", " + placeOf(camera) + ".";
    if (isMoved) return {State::Good, "Cámara del aula conectada: " + nameOf(camera), detail};
    if (!camera.isSupported)
        return {State::Information, "Otra cámara, que este programa no mueve: " + nameOf(camera), detail};
    if (camera.isUsable)
        return {State::Information, "Cámara del mismo modelo, que no se mueve: " + nameOf(camera), detail};
    return {State::Fault, "Cámara del aula con una descripción USB incorrecta: " + nameOf(camera),
            detail + " Desenchúfela de la corriente, espere diez segundos y vuelva a enchufarla."};
}

/// Whether a driver that is not for cameras holds it, so that no program can use it.
bool isHeldByOtherDriver(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    return access.holder == usb::Holder::otherDriver && access.backend != usb::Backend::driver;
}

Line driverLine(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    if (access.holder == usb::Holder::nobody)
        return {
            State::Good, "Ningún controlador del sistema tiene la cámara; se usa directamente por USB", {}};
    if (usesKernelDriver(facts))
        return {State::Good,
                "El controlador de vídeo del sistema (" + access.holderName +
                    ") gestiona la cámara, como es normal",
                "Recuerda sus límites, y a veces su posición, sin volver a preguntárselos."};
    if (access.holder == usb::Holder::program)
        return {State::Fault,
                "Otro programa se ha quedado con el control de la cámara (" + access.holderName + ")",
                "Ciérrelo, o desenchufe la cámara y vuelva a enchufarla."};
    if (isHeldByOtherDriver(facts))
        return {State::Fault, "Un controlador que no es de vídeo tiene la cámara: " + access.holderName,
                "Con él no se puede mover. No es un programa que se pueda cerrar: quien administra el equipo "
                "tiene que quitar ese controlador y volver a enchufar la cámara."};
    return {State::Warning, "Un controlador desconocido gestiona la cámara: " + access.holderName, {}};
}

Line permissionLine(const usb::InterfaceReport &access) {
    if (access.path.empty())
        return {State::Fault, "El controlador no ofrece ningún fichero para usar la cámara",
                "Desenchufe la cámara y vuelva a enchufarla; si sigue igual, reinicie el equipo."};
    switch (access.access) {
        case usb::Outcome::done:
            return {State::Good, "Este usuario puede abrir " + access.path, {}};
        case usb::Outcome::denied:
            return {
                State::Fault, "Este usuario no tiene permiso para abrir " + access.path,
                access.backend == usb::Backend::driver
                    ? "Inicie la sesión sentado ante este equipo, no a distancia, o añada el usuario al "
                      "grupo «video» y vuelva a iniciar la sesión."
                    : "Falta la regla de permisos (udev) de la cámara: reinstale el programa, desenchufe la "
                      "cámara y vuelva a enchufarla."};
        case usb::Outcome::busy:
            return {State::Fault, "Otro programa tiene ocupado " + access.path,
                    "Ciérrelo y compruebe de nuevo."};
        default:
            return {State::Fault, "No se puede abrir " + access.path,
                    "Desenchufe la cámara y vuelva a enchufarla."};
    }
}

Line programsLine(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    std::string detail = access.sawEveryProgram
                             ? ""
                             : "No se pueden ver los programas de otros usuarios; puede haber alguno más.";
    if (access.programs.empty())
        return {State::Information, "Ningún programa tiene abierta la imagen de la cámara", detail};
    std::string names;
    for (const usb::ProgramHolding &program : access.programs)
        names += (names.empty() ? "" : ", ") + scenes::repairUtf8(program.name) + " (proceso " +
                 std::to_string(program.processId) + (program.streams ? ", recibiendo imagen)" : ")");
    // Without the kernel's driver, a program that has the camera open does keep it from moving.
    if (usesKernelDriver(facts)) detail += (detail.empty() ? "" : " ") + std::string("No impiden moverla.");
    return {State::Information, "Programas que tienen abierta la cámara: " + names, detail};
}

void addPace(Section &section, const Facts &facts) {
    const std::string remedy = "Conéctela directamente al equipo, sin concentradores ni alargadores USB.";
    if (facts.isTooSlow)
        section.lines.push_back({State::Warning,
                                 "La cámara tarda demasiado en contestar: más de " +
                                     std::to_string(usb::kRequestTimeout) + " milisegundos",
                                 "No se le ha preguntado nada más. " + remedy});
    else if (!facts.givenUp && facts.slowest >= kSlowTransfer)
        section.lines.push_back({State::Warning,
                                 "La cámara contesta despacio: hasta " +
                                     std::to_string(facts.slowest.count()) +
                                     " milisegundos para leer una posición",
                                 remedy});
}

bool isToldByRequest(const ControlFacts &control, usb::Outcome outcome) {
    return std::ranges::any_of(
        control.failures, [outcome](const FailedRequest &failure) { return failure.outcome == outcome; });
}

/// Why the camera was not asked any further, where nothing else tells it: a camera may be gone, or refuse to
/// open, a moment after its file was looked at.
void addReasonToStop(Section &section, const Facts &facts) {
    const usb::Outcome reason = *facts.givenUp;
    if (isToldByRequest(facts.panTilt, reason) || isToldByRequest(facts.zoom, reason)) return;
    if (reason == usb::Outcome::disconnected) {
        section.lines.push_back({State::Fault, "La cámara se ha desconectado durante la comprobación",
                                 "Compruebe el cable USB en los dos extremos."});
        return;
    }
    if (section.state() == State::Fault) return;
    if (reason == usb::Outcome::denied)
        section.lines.push_back({State::Fault, "El sistema no ha permitido abrir la cámara", {}});
    else if (reason == usb::Outcome::busy)
        section.lines.push_back({State::Fault, "Otro programa o controlador tiene ocupada la cámara",
                                 "Cierre los programas que usan la cámara y compruebe de nuevo."});
    else
        section.lines.push_back(
            {State::Fault, "No se ha podido abrir la cámara", "Desenchufe la cámara y vuelva a enchufarla."});
}

}  // namespace

Section busFindings(const Facts &facts) {
    Section section{"Cámaras conectadas", {}};
    if (!facts.busWasRead) {
        section.lines.push_back({State::Fault, "No se pueden ver los dispositivos USB de este equipo", {}});
        return section;
    }
    const auto supported = std::ranges::count_if(facts.cameras, &CameraFacts::isSupported);
    if (supported == 0)
        section.lines.push_back(
            {State::Fault, "No está conectada la cámara del aula",
             "Se busca la identificación " + supportedIds() +
                 ". Compruebe el cable USB en los dos extremos y que la cámara tenga corriente."});
    if (supported > 1)
        section.lines.push_back({State::Warning,
                                 "Hay " + std::to_string(supported) +
                                     " cámaras del mismo modelo; el programa mueve la última de esta lista",
                                 supported == 2
                                     ? "Si es la otra la que tiene que moverse, desenchufe la que sobra."
                                     : "Si es otra la que tiene que moverse, desenchufe las que sobran."});
    for (std::size_t i = 0; i < facts.cameras.size(); ++i)
        section.lines.push_back(cameraLine(facts.cameras[i], facts.moved == i));
    return section;
}

Section accessFindings(const Facts &facts) {
    Section section{"Acceso a la cámara", {}};
    if (!facts.access) {
        section.lines.push_back({State::Information, "El sistema no dice cómo se llega a la cámara", {}});
    } else {
        section.lines.push_back(driverLine(facts));
        // The file is busy because of that driver, as the line above says.
        if (!isHeldByOtherDriver(facts) || facts.access->access != usb::Outcome::busy)
            section.lines.push_back(permissionLine(*facts.access));
        section.lines.push_back(programsLine(facts));
    }
    if (facts.givenUp && !facts.isTooSlow) addReasonToStop(section, facts);
    addPace(section, facts);
    return section;
}

}  // namespace selfcheck
