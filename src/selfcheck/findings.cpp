#include "selfcheck/findings.h"

#include <algorithm>

namespace selfcheck {
namespace {

Line fault(std::string text, std::string detail = {}) {
    return {State::Fault, std::move(text), std::move(detail)};
}

constexpr char kRestartCamera[] = "Desenchúfela de la corriente, espere diez segundos y vuelva a enchufarla.";

/// Why no camera can be asked at all; the bus section has the details.
Line verdictWithoutCamera(const Facts &facts) {
    if (!facts.busWasRead)
        return fault("No se pueden ver los dispositivos USB de este equipo.",
                     "Reinicie el equipo y compruebe de nuevo.");
    if (std::ranges::any_of(facts.cameras, &CameraFacts::isSupported))
        return fault("La cámara está conectada, pero no se presenta como una cámara que se pueda mover.",
                     kRestartCamera);
    if (!facts.cameras.empty())
        return fault(std::string("No se ve ninguna cámara que este programa sepa mover; ") +
                         (facts.cameras.size() == 1 ? "la que hay conectada es de otro modelo."
                                                    : "las que hay conectadas son de otros modelos."),
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
            return fault("La cámara está conectada, pero no contesta.", kRestartCamera);
        default:
            return fault("La cámara está conectada, pero no se puede abrir.");
    }
}

bool holds(const Section &section, State state) {
    return std::ranges::any_of(section.lines, [state](const Line &line) { return line.state == state; });
}

/// The first order that did not end well, or whose reading did not.
std::optional<OrderFacts> failedOrder(const Facts &facts) {
    if (!facts.trial) return std::nullopt;
    for (const auto &order : {facts.trial->panTilt, facts.trial->zoom})
        if (order && order->outcome != usb::Outcome::done) return order;
    return std::nullopt;
}

/// Whether orders were given and all were accepted.
bool hasObeyed(const Facts &facts) {
    if (!facts.trial || failedOrder(facts)) return false;
    const auto wasObeyed = [](const std::optional<OrderFacts> &order) { return order && order->wasObeyed(); };
    return wasObeyed(facts.trial->panTilt) || wasObeyed(facts.trial->zoom);
}

struct Parts {
    Section trial;
    Section bus;
    Section access;
    Section panTilt;
    Section zoom;
    Section store;
};

/// What is known of a camera without faults, as the beginning of a sentence.
std::string knownOf(const Facts &facts) {
    if (hasObeyed(facts)) return "La cámara obedece";
    return usesKernelDriver(facts) ? "La cámara está conectada" : "La cámara contesta";
}

/// A camera without faults, and a store that can be loaded: whether there is something to look at.
Line verdictOfSound(const Facts &facts, const Parts &parts) {
    const std::string known = knownOf(facts);
    const std::string below = "Está señalado más abajo.";
    if (holds(parts.panTilt, State::Warning) || holds(parts.zoom, State::Warning))
        return {State::Warning, known + ", pero hay algo en ella que no es normal.", below};
    const auto ofTheModel = std::ranges::count_if(facts.cameras, &CameraFacts::isSupported);
    if (ofTheModel > 1)
        return {State::Warning,
                known + (ofTheModel == 2 ? ", pero hay conectada otra cámara del mismo modelo."
                                         : ", pero hay conectadas otras cámaras del mismo modelo."),
                "Más abajo se dice cuál de ellas se mueve."};
    if (parts.bus.state() >= State::Warning || parts.access.state() >= State::Warning)
        return {State::Warning, known + ", pero hay algo que mirar en cómo se llega a ella.", below};
    if (holds(parts.store, State::Warning))
        return {State::Warning, known + ". Hay ficheros de escenas con problemas.", below};
    if (hasObeyed(facts)) {
        if (parts.trial.state() == State::Warning) return {State::Warning, known + ", pero despacio.", below};
        return {State::Good, known + ", y las escenas guardadas se pueden leer.", {}};
    }

    const std::string toDo = "Pulse «Probar una orden» para saberlo.";
    const std::string text = known + " y no se ve ningún problema. Falta saber si obedece.";
    if (!usesKernelDriver(facts))
        return {State::Good, text, "Solo se le ha preguntado; no se le ha dado ninguna orden. " + toDo};
    return {
        State::Information, text,
        "No se le ha dado ninguna orden, y a las preguntas puede haber contestado el sistema de memoria. " +
            toDo};
}

Line verdictOfFailedOrder(const OrderFacts &order) {
    if (order.outcome != usb::Outcome::refused && order.outcome != usb::Outcome::failed)
        return verdictGivenUp(order.outcome);
    if (order.stage == OrderFacts::Stage::Reading)
        return fault("La cámara no ha dicho su posición, así que no se sabe si obedece.", kRestartCamera);
    return fault("La cámara no obedece: no ha aceptado la orden.",
                 std::string("Más abajo se dice cuál. ") + kRestartCamera +
                     " Si sigue igual, mire en su menú si está bloqueada.");
}

Line verdict(const Facts &facts, const Parts &parts) {
    if (!facts.moved) return verdictWithoutCamera(facts);
    if (facts.givenUp && !facts.isTooSlow) return verdictGivenUp(*facts.givenUp);
    if (const auto failed = failedOrder(facts)) return verdictOfFailedOrder(*failed);
    if (!facts.isTooSlow && !facts.panTilt.isOffered && !facts.zoom.isOffered)
        return fault("La cámara está conectada, pero no ofrece ni giro ni zoom.");
    if (holds(parts.panTilt, State::Fault) || holds(parts.zoom, State::Fault))
        return fault("La cámara está conectada, pero le falta algo para poder moverla.",
                     "Los fallos están señalados más abajo.");
    if (facts.isTooSlow)
        return {
            State::Warning,
            "La cámara contesta, pero demasiado despacio: no se le ha preguntado todo, así que no se sabe "
            "si se puede mover.",
            "Conéctela directamente al equipo y compruebe de nuevo."};
    if (holds(parts.store, State::Fault))
        return fault(knownOf(facts) + ", pero el programa no puede arrancar con las escenas guardadas.",
                     "Más abajo se dice qué fichero hay que apartar.");
    return verdictOfSound(facts, parts);
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
    Parts parts{trialFindings(facts),   busFindings(facts),  accessFindings(facts),
                panTiltFindings(facts), zoomFindings(facts), storeFindings(facts.store)};

    Report report;
    report.verdict = verdict(facts, parts);
    if (facts.trial) report.sections.push_back(std::move(parts.trial));
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
