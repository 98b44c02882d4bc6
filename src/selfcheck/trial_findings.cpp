// Whether the camera obeys.

#include "selfcheck/findings.h"

namespace selfcheck {
namespace {

std::string durationText(std::chrono::milliseconds duration) {
    const auto count = duration.count();
    if (count == 0) return "menos de un milisegundo";
    return std::to_string(count) + (count == 1 ? " milisegundo" : " milisegundos");
}

Line unsentLine(const std::string &name, const OrderFacts &order) {
    if (order.stage == OrderFacts::Stage::OutsideRange)
        return {State::Information, name + ": no se ha probado",
                "La cámara dice estar fuera de su propio rango. Elija una escena y compruebe de nuevo."};
    return {State::Fault, name + ": no se ha podido leer la posición", "Por eso no se ha enviado la orden."};
}

Line orderLine(const std::string &name, const OrderFacts &order, int transfers) {
    switch (order.outcome) {
        case usb::Outcome::timedOut:
            return {State::Fault, name + ": la cámara no ha contestado a tiempo", {}};
        case usb::Outcome::disconnected:
            return {State::Fault, name + ": la cámara ya no está conectada", {}};
        case usb::Outcome::denied:
            return {State::Fault, name + ": el sistema no ha permitido abrir la cámara", {}};
        case usb::Outcome::busy:
            return {State::Fault, name + ": otro programa tiene ocupada la cámara", {}};
        default:
            break;
    }
    if (order.stage != OrderFacts::Stage::Ordering) return unsentLine(name, order);
    if (order.outcome != usb::Outcome::done)
        return {State::Fault, name + ": la cámara ha rechazado la orden", {}};
    const bool isSlow = order.duration >= transfers * kSlowTransfer;
    return {isSlow ? State::Warning : State::Good, name + ": la cámara ha aceptado la orden",
            "Ha tardado " + durationText(order.duration) + "."};
}

}  // namespace

Section trialFindings(const Facts &facts) {
    Section section{"Prueba de una orden", {}};
    if (!facts.trial) return section;
    // The kernel's driver may read pan and tilt before it writes them.
    if (facts.trial->panTilt)
        section.lines.push_back(
            orderLine("Giro e inclinación", *facts.trial->panTilt, usesKernelDriver(facts) ? 2 : 1));
    if (facts.trial->zoom) section.lines.push_back(orderLine("Zoom", *facts.trial->zoom, 1));
    return section;
}

}  // namespace selfcheck
