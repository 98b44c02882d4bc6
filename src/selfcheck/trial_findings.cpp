// Whether the camera obeys.

#include "selfcheck/findings.h"
#include "selfcheck/sentences.h"

namespace selfcheck {
namespace {

std::string durationText(std::chrono::milliseconds duration) {
    const auto count = duration.count();
    if (count == 0) return "menos de un milisegundo";
    return std::to_string(count) + (count == 1 ? " milisegundo" : " milisegundos");
}

Line orderLine(const std::string &name, const OrderFacts &order, int transfers) {
    switch (order.outcome) {
        case usb::Outcome::timedOut:
            return say(Sentence::orderUnanswered, {name});
        case usb::Outcome::disconnected:
            return say(Sentence::orderGone, {name});
        case usb::Outcome::denied:
            return say(Sentence::orderDenied, {name});
        case usb::Outcome::busy:
            return say(Sentence::orderBusy, {name});
        default:
            break;
    }
    if (order.stage == OrderFacts::Stage::outsideRange) return say(Sentence::orderOutsideRange, {name});
    if (order.stage == OrderFacts::Stage::reading) return say(Sentence::orderUnread, {name});
    if (order.outcome != usb::Outcome::done) return say(Sentence::orderRefused, {name});
    const bool isLate = order.duration >= transfers * kSlowTransfer;
    return say(isLate ? Sentence::orderAcceptedLate : Sentence::orderAccepted,
               {name, durationText(order.duration)});
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
