// What the camera says of its pan, tilt and zoom, and what is wrong with it.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <span>

#include "model/camera_models.h"
#include "selfcheck/findings.h"
#include "selfcheck/sentences.h"

namespace selfcheck {
namespace {

struct Axis {
    const char *name;
    bool inArcSeconds;  ///< otherwise in units of the camera's own
};

constexpr std::array<Axis, 2> kPanTiltAxes{{{"Giro", true}, {"Inclinación", true}}};
constexpr std::array<Axis, 1> kZoomAxes{{{"Zoom", false}}};

/// "-612000 (-170,0°)".
std::string withDegrees(const Axis &axis, std::int64_t raw) {
    std::string text = std::to_string(raw);
    if (!axis.inArcSeconds) return text;
    // By whole numbers: a decimal point would come out as the locale likes it.
    constexpr std::int64_t kTenthOfDegree = model::kRawPerDegree / 10;
    const std::int64_t tenths = std::llround(static_cast<double>(raw) / kTenthOfDegree);
    const std::int64_t size = std::abs(tenths);
    return text + " (" + (tenths < 0 ? "-" : "") + std::to_string(size / 10) + "," +
           std::to_string(size % 10) + "°)";
}

std::string valueText(const Axis &axis, const std::optional<FieldValues> &values, std::size_t field) {
    return values ? withDegrees(axis, (*values)[field]) : "desconocido";
}

std::string requestName(std::uint8_t code) {
    switch (code) {
        case usb::request::kGetCur:
            return "GET_CUR (valor actual)";
        case usb::request::kGetMin:
            return "GET_MIN (mínimo)";
        case usb::request::kGetMax:
            return "GET_MAX (máximo)";
        case usb::request::kGetRes:
            return "GET_RES (paso)";
        case usb::request::kGetInfo:
            return "GET_INFO (qué admite)";
        case usb::request::kGetDef:
            return "GET_DEF (valor predeterminado)";
        default: {
            char name[16];
            std::snprintf(name, sizeof name, "0x%02x", unsigned{code});
            return name;
        }
    }
}

Line failureLine(const FailedRequest &failure) {
    // Without these two the control cannot be used at all. The others only describe its range, unless the
    // kernel's driver asks for them (see lacksLimitsForKernel()).
    const bool isNeeded = failure.code == usb::request::kGetCur || failure.code == usb::request::kGetInfo;
    const std::string name = requestName(failure.code);
    switch (failure.outcome) {
        case usb::Outcome::timedOut:
            return say(Sentence::requestUnanswered, {name});
        case usb::Outcome::disconnected:
            return say(Sentence::requestGone, {name});
        case usb::Outcome::refused:
            return say(isNeeded ? Sentence::neededRequestRefused : Sentence::requestRefused, {name});
        default:
            return say(isNeeded ? Sentence::neededRequestFailed : Sentence::requestFailed, {name});
    }
}

bool hasFailed(const ControlFacts &facts, std::uint8_t code) {
    return std::ranges::any_of(facts.failures, [code](const FailedRequest &failure) {
        return failure.code == code && failure.outcome != usb::Outcome::timedOut &&
               failure.outcome != usb::Outcome::disconnected;
    });
}

constexpr std::array kLimitRequests{usb::request::kGetInfo, usb::request::kGetMin, usb::request::kGetMax,
                                    usb::request::kGetRes, usb::request::kGetDef};

/// The kernel's driver reads all limits of a control together and has no control where one of them is
/// refused: each of these requests fails then, whichever the camera refused. The maximum is not asked for
/// when the minimum has failed.
bool lacksLimitsForKernel(const Facts &facts, const ControlFacts &control) {
    return usesKernelDriver(facts) && std::ranges::all_of(kLimitRequests, [&control](std::uint8_t code) {
               return code == usb::request::kGetMax || hasFailed(control, code);
           });
}

void addFailures(Section &section, const Facts &facts, const ControlFacts &control) {
    const bool lacksLimits = lacksLimitsForKernel(facts, control);
    if (lacksLimits) section.lines.push_back(say(Sentence::limitsRefused));
    for (const FailedRequest &failure : control.failures)
        if (!lacksLimits || std::ranges::count(kLimitRequests, failure.code) == 0)
            section.lines.push_back(failureLine(failure));
}

bool isOutside(std::int64_t value, std::int64_t minimum, std::int64_t maximum) {
    return value < minimum || value > maximum;
}

void addRangeFindings(Section &section, const Axis &axis, const ControlFacts &facts, std::size_t field) {
    if (!facts.minimum || !facts.maximum) return;
    const std::string name = axis.name;
    const std::int64_t minimum = (*facts.minimum)[field];
    const std::int64_t maximum = (*facts.maximum)[field];
    if (minimum > maximum) {
        section.lines.push_back(say(Sentence::rangeReversed, {name}));
        return;
    }
    if (minimum == maximum) section.lines.push_back(say(Sentence::rangeEmpty, {name}));
    if (facts.current && isOutside((*facts.current)[field], minimum, maximum))
        section.lines.push_back(
            say(Sentence::positionOutside, {name, withDegrees(axis, (*facts.current)[field])}));
    if (facts.defaultValue && isOutside((*facts.defaultValue)[field], minimum, maximum))
        section.lines.push_back(
            say(Sentence::defaultOutside, {name, withDegrees(axis, (*facts.defaultValue)[field])}));
}

std::string limitsText(const Axis &axis, const ControlFacts &facts, std::size_t field) {
    if (!facts.minimum && !facts.resolution && !facts.defaultValue) return say(Sentence::limitsUnknown).text;
    const std::string resolution = valueText(axis, facts.resolution, field);
    const std::string defaultValue = valueText(axis, facts.defaultValue, field);
    if (!facts.minimum || !facts.maximum)
        return say(Sentence::limitsWithoutRange, {resolution, defaultValue}).text;
    return say(Sentence::limits, {withDegrees(axis, (*facts.minimum)[field]),
                                  withDegrees(axis, (*facts.maximum)[field]), resolution, defaultValue})
        .text;
}

Line positionLine(const Axis &axis, const Facts &facts, const ControlFacts &control, std::size_t field) {
    const std::string limits = limitsText(axis, control, field);
    if (!control.current) return say(Sentence::positionUnknown, {axis.name, limits});
    return say(usesKernelDriver(facts) ? Sentence::positionFromSystem : Sentence::position,
               {axis.name, withDegrees(axis, (*control.current)[field]), limits});
}

void addAxis(Section &section, const Axis &axis, const Facts &facts, const ControlFacts &control,
             std::size_t field) {
    const std::size_t own = section.lines.size();
    section.lines.push_back(positionLine(axis, facts, control, field));
    addRangeFindings(section, axis, control, field);
    if (control.resolution && (*control.resolution)[field] <= 0)
        section.lines.push_back(
            say(Sentence::resolutionTooSmall, {axis.name, std::to_string((*control.resolution)[field])}));
    // A position is good only where there are limits to compare it with and nothing is wrong with them.
    if (!control.minimum || !control.maximum || section.lines.size() > own + 1)
        section.lines[own].state = State::information;
}

bool wasAnswered(const ControlFacts &facts) {
    return facts.minimum || facts.resolution || facts.defaultValue || facts.current;
}

Section controlFindings(std::string title, const Facts &facts, const ControlFacts &control,
                        std::span<const Axis> axes) {
    Section section{std::move(title), {}};
    if (!facts.moved) return section;
    const bool couldBeAsked = wasAnswered(control) || !control.failures.empty();
    if (!control.isOffered && !facts.givenUp) {
        section.lines.push_back(say(Sentence::notOffered));
        return section;
    }
    if (!couldBeAsked) {
        section.lines.push_back(say(Sentence::notAsked));
        return section;
    }
    if (wasAnswered(control))
        for (std::size_t field = 0; field < axes.size(); ++field)
            addAxis(section, axes[field], facts, control, field);
    if (!control.maySet) section.lines.push_back(say(Sentence::notSettable));
    addFailures(section, facts, control);
    return section;
}

}  // namespace

Section panTiltFindings(const Facts &facts) {
    return controlFindings("Giro e inclinación (pan-tilt-abs)", facts, facts.panTilt, kPanTiltAxes);
}

Section zoomFindings(const Facts &facts) {
    return controlFindings("Zoom (zoom-abs)", facts, facts.zoom, kZoomAxes);
}

}  // namespace selfcheck
