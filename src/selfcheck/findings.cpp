#include "selfcheck/findings.h"

#include <algorithm>

namespace selfcheck {
namespace {

Line fault(std::string text, std::string detail = {}) {
    return {State::Fault, std::move(text), std::move(detail)};
}

/// Why no camera can be asked at all; the bus section has the details.
Line verdictWithoutCamera(const Facts &facts) {
    if (!facts.busWasRead)
        return fault("No se pueden ver los dispositivos USB de este equipo.",
                     "Reinicie el equipo y compruebe de nuevo.");
    if (std::ranges::any_of(facts.cameras, &CameraFacts::isSupported))
        return fault("La cámara está conectada, pero no se presenta como una cámara que se pueda mover.",
                     "Desenchúfela de la corriente, espere diez segundos y vuelva a enchufarla.");
    if (!facts.cameras.empty())
        return fault(
            "No se ve ninguna cámara que este programa sepa mover; la que hay conectada es de otro modelo.",
            "Conecte la cámara motorizada del aula.");
    return fault("No se ve ninguna cámara conectada a este equipo.",
                 "Compruebe el cable USB en los dos extremos y que la cámara tenga corriente.");
}

Line verdictGivenUp(usb::Outcome outcome) {
    switch (outcome) {
        case usb::Outcome::denied:
            return fault("La cámara está conectada, pero este usuario no tiene permiso para usarla.");
        case usb::Outcome::busy:
            return fault("La cámara está conectada, pero otro programa o controlador la tiene ocupada.");
        case usb::Outcome::disconnected:
            return fault("La cámara se ha desconectado durante la comprobación.",
                         "Compruebe el cable USB y vuelva a comprobar.");
        case usb::Outcome::timedOut:
            return fault("La cámara está conectada, pero no contesta.",
                         "Desenchúfela de la corriente, espere diez segundos y vuelva a enchufarla.");
        default:
            return fault("La cámara está conectada, pero no se puede abrir.");
    }
}

bool holds(const Section &section, State state) {
    return std::ranges::any_of(section.lines, [state](const Line &line) { return line.state == state; });
}

struct Parts {
    Section bus;
    Section access;
    Section panTilt;
    Section zoom;
    Section store;
};

/// A camera that can be moved, and a store that can be loaded: whether there is something to look at.
Line verdictOfMovable(const Facts &facts, const Parts &parts) {
    const std::string moves = "La cámara responde: se puede mover";
    const std::string below = "Está señalado más abajo.";
    if (holds(parts.panTilt, State::Warning) || holds(parts.zoom, State::Warning))
        return {State::Warning, moves + ", pero algo de lo que contesta no es normal.", below};
    if (std::ranges::count_if(facts.cameras, &CameraFacts::isSupported) > 1)
        return {State::Warning, moves + ", pero hay conectada otra cámara del mismo modelo.",
                "Más abajo se dice cuál de ellas se mueve."};
    if (parts.bus.state() >= State::Warning || parts.access.state() >= State::Warning)
        return {State::Warning, moves + ", pero hay algo que mirar en cómo se llega a ella.", below};
    if (holds(parts.store, State::Warning))
        return {State::Warning, moves + ". Hay ficheros de escenas con problemas.", below};
    return {State::Good, moves + ", y las escenas guardadas se pueden leer.", {}};
}

Line verdict(const Facts &facts, const Parts &parts) {
    if (!facts.moved) return verdictWithoutCamera(facts);
    if (facts.givenUp && !facts.isTooSlow) return verdictGivenUp(*facts.givenUp);
    if (!facts.isTooSlow && !facts.panTilt.isOffered && !facts.zoom.isOffered)
        return fault("La cámara está conectada, pero no ofrece ni giro ni zoom.");
    if (holds(parts.panTilt, State::Fault) || holds(parts.zoom, State::Fault))
        return fault("La cámara responde, pero no a todo lo que hace falta para moverla.",
                     "Los fallos están señalados más abajo.");
    if (facts.isTooSlow)
        return {
            State::Warning,
            "La cámara contesta, pero demasiado despacio: no se le ha preguntado todo, así que no se sabe "
            "si se puede mover.",
            "Conéctela directamente al equipo y compruebe de nuevo."};
    if (holds(parts.store, State::Fault))
        return fault(
            "La cámara responde: se puede mover. Pero el programa no puede arrancar con las escenas "
            "guardadas.",
            "Más abajo se dice qué fichero hay que apartar.");
    return verdictOfMovable(facts, parts);
}

}  // namespace

State Section::state() const {
    const auto worst = std::ranges::max_element(lines, {}, &Line::state);
    return worst == lines.end() ? State::Information : worst->state;
}

std::string stateWord(State state) {
    switch (state) {
        case State::Good:
            return "Bien";
        case State::Warning:
            return "Aviso";
        case State::Fault:
            return "Fallo";
        case State::Information:
            break;
    }
    return "Dato";
}

Report findings(const Facts &facts) {
    Parts parts{busFindings(facts), accessFindings(facts), panTiltFindings(facts), zoomFindings(facts),
                storeFindings(facts.store)};

    Report report;
    report.verdict = verdict(facts, parts);
    report.sections.push_back(std::move(parts.bus));
    if (facts.moved) {
        report.sections.push_back(std::move(parts.access));
        report.sections.push_back(std::move(parts.panTilt));
        report.sections.push_back(std::move(parts.zoom));
    }
    report.sections.push_back(std::move(parts.store));
    return report;
}

}  // namespace selfcheck
