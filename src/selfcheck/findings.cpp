#include "selfcheck/findings.h"

#include <algorithm>

#include "selfcheck/sentences.h"

namespace selfcheck {
namespace {

/// Why no camera can be asked at all; the bus section has the details.
Sentence reasonWithoutCamera(const Facts &facts) {
    if (!facts.busWasRead) return Sentence::nothingSeen;
    if (std::ranges::any_of(facts.cameras, &CameraFacts::isSupported)) return Sentence::roomCameraIsBroken;
    if (facts.cameras.empty()) return Sentence::noCamera;
    return facts.cameras.size() == 1 ? Sentence::onlyAnotherModel : Sentence::onlyOtherModels;
}

Sentence reasonGivenUp(usb::Outcome outcome) {
    switch (outcome) {
        case usb::Outcome::denied:
            return Sentence::cameraDenied;
        case usb::Outcome::busy:
            return Sentence::cameraBusy;
        case usb::Outcome::disconnected:
            return Sentence::cameraGone;
        case usb::Outcome::timedOut:
            return Sentence::cameraSilent;
        default:
            return Sentence::cameraUnopened;
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
Sentence verdictOfSound(const Facts &facts, const Parts &parts) {
    if (holds(parts.panTilt, State::warning) || holds(parts.zoom, State::warning)) return Sentence::notNormal;
    const auto ofTheModel = std::ranges::count_if(facts.cameras, &CameraFacts::isSupported);
    if (ofTheModel > 1) return ofTheModel == 2 ? Sentence::hasTwin : Sentence::hasTwins;
    if (parts.access.state() >= State::warning) return Sentence::accessToLookAt;
    if (holds(parts.store, State::warning)) return Sentence::filesToLookAt;
    if (hasObeyed(facts))
        return parts.trial.state() == State::warning ? Sentence::obeysSlowly : Sentence::obeys;
    return usesKernelDriver(facts) ? Sentence::looksSoundFromMemory : Sentence::looksSound;
}

Sentence reasonOfFailedOrder(const OrderFacts &order) {
    if (order.outcome != usb::Outcome::refused && order.outcome != usb::Outcome::failed)
        return reasonGivenUp(order.outcome);
    return order.stage == OrderFacts::Stage::reading ? Sentence::positionNotTold : Sentence::disobeys;
}

Sentence verdict(const Facts &facts, const Parts &parts) {
    if (!facts.moved) return reasonWithoutCamera(facts);
    if (facts.givenUp && !facts.isTooSlow) return reasonGivenUp(*facts.givenUp);
    if (const auto failed = failedOrder(facts)) return reasonOfFailedOrder(*failed);
    if (!facts.isTooSlow && !facts.panTilt.isOffered && !facts.zoom.isOffered) return Sentence::offersNothing;
    if (holds(parts.panTilt, State::fault) || holds(parts.zoom, State::fault))
        return Sentence::lacksSomething;
    if (facts.isTooSlow) return Sentence::tooSlowToTell;
    if (holds(parts.store, State::fault)) return Sentence::cannotStart;
    return verdictOfSound(facts, parts);
}

}  // namespace

State Section::state() const {
    const auto worst = std::ranges::max_element(lines, {}, &Line::state);
    return worst == lines.end() ? State::information : worst->state;
}

Report findings(const Facts &facts) {
    Parts parts{trialFindings(facts),   busFindings(facts),  accessFindings(facts),
                panTiltFindings(facts), zoomFindings(facts), storeFindings(facts.store)};

    Report report;
    report.verdict = say(verdict(facts, parts), {knownOf(facts)});
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
