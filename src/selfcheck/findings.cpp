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

Line verdict(const Facts &facts, const Section &panTilt, const Section &zoom, const Section &store) {
    if (!facts.moved) return verdictWithoutCamera(facts);
    if (facts.givenUp) return verdictGivenUp(*facts.givenUp);
    if (!facts.panTilt.isOffered && !facts.zoom.isOffered)
        return fault("La cámara está conectada, pero no ofrece ni giro ni zoom.");
    if (holds(panTilt, State::Fault) || holds(zoom, State::Fault))
        return fault("La cámara responde, pero no a todo lo que hace falta para moverla.",
                     "Los fallos están señalados más abajo.");
    if (holds(store, State::Fault))
        return fault(
            "La cámara responde: se puede mover. Pero el programa no puede arrancar con las escenas "
            "guardadas.",
            "Más abajo se dice qué fichero hay que apartar.");
    if (holds(panTilt, State::Warning) || holds(zoom, State::Warning))
        return {State::Warning,
                "La cámara responde: se puede mover, pero algo de lo que contesta no es normal.",
                {}};
    if (holds(store, State::Warning))
        return {
            State::Warning, "La cámara responde: se puede mover. Hay ficheros de escenas con problemas.", {}};
    return {State::Good, "La cámara responde: se puede mover, y las escenas guardadas se pueden leer.", {}};
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
    Section panTilt = panTiltFindings(facts);
    Section zoom = zoomFindings(facts);
    Section store = storeFindings(facts.store);

    Report report;
    report.verdict = verdict(facts, panTilt, zoom, store);
    report.sections.push_back(busFindings(facts));
    if (facts.moved) {
        report.sections.push_back(accessFindings(facts));
        report.sections.push_back(std::move(panTilt));
        report.sections.push_back(std::move(zoom));
    }
    report.sections.push_back(std::move(store));
    return report;
}

}  // namespace selfcheck
