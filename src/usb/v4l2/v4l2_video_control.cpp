#include "usb/v4l2/v4l2_video_control.h"

#include <utility>

#include "usb/v4l2/translation.h"
#include "usb/v4l2/v4l2_outcome.h"
#include "usb/video_control_descriptors.h"

namespace usb {

namespace {

using v4l2::Coding;
using v4l2::outcomeOfRequest;
using v4l2::Row;

using namespace usb::request;

constexpr std::uint8_t kAutoWhiteBalanceTemp = 0x0B;
constexpr std::uint8_t kAutoWhiteBalanceComponent = 0x0D;
/// Their bits in the processing unit's bmControls (USB Video Class 1.1, section 3.7.2.5).
constexpr unsigned kAutoWhiteBalanceTempBit = 12;
constexpr unsigned kAutoWhiteBalanceComponentBit = 13;

std::uint8_t highByte(std::uint16_t value) {
    return static_cast<std::uint8_t>(value >> 8);
}
std::uint8_t lowByte(std::uint16_t value) {
    return static_cast<std::uint8_t>(value & 0xFF);
}

/// Whether the processing unit has the control behind bit `bit`.
bool processingUnitHas(std::span<const std::uint8_t> descriptors, unsigned bit) {
    const auto parsed = parseVideoControlDescriptors(descriptors);
    return parsed && parsed->processingUnitBitmap && hasControl(*parsed->processingUnitBitmap, bit);
}

/// V4L2 has one name for the two controls of automatic white balance. Whether it means, on this camera, the
/// other one than `selector`: on a camera with both it means auto-white-balance-temp.
bool meansOtherWhiteBalance(std::span<const std::uint8_t> descriptors, std::uint8_t selector) {
    if (selector == kAutoWhiteBalanceComponent)
        return processingUnitHas(descriptors, kAutoWhiteBalanceTempBit);
    if (selector != kAutoWhiteBalanceTemp) return false;
    return !processingUnitHas(descriptors, kAutoWhiteBalanceTempBit) &&
           processingUnitHas(descriptors, kAutoWhiteBalanceComponentBit);
}

/// The controls of V4L2 that `rows` stand for, as one call takes them.
std::vector<v4l2_ext_control> controlsOf(std::span<const Row> rows) {
    std::vector<v4l2_ext_control> controls(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) controls[i].id = rows[i].id;
    return controls;
}

std::int64_t limitOf(const v4l2_query_ext_ctrl &control, std::uint8_t request) {
    switch (request) {
        case kGetMin:
            return control.minimum;
        case kGetMax:
            return control.maximum;
        case kGetRes:
            return static_cast<std::int64_t>(control.step);
        default:
            return control.default_value;
    }
}

}  // namespace

V4l2VideoControl::V4l2VideoControl(v4l2::SysfsInterface interface, std::uint8_t interfaceNumber,
                                   std::vector<std::uint8_t> classDescriptors)
    : interface_(std::move(interface)),
      interfaceNumber_(interfaceNumber),
      classDescriptors_(std::move(classDescriptors)) {}

Outcome V4l2VideoControl::open() {
    isOpen_ = node_.has_value();
    if (isOpen_) return Outcome::done;

    path_.clear();
    const auto nodes = interface_.videoNodes();
    if (nodes.empty()) return Outcome::busy;

    v4l2::NodeSearch search = v4l2::openCaptureNode(nodes);
    path_ = std::move(search.path);
    if (!search.node) return search.outcome;
    // Asked last: the node that is open now may be that of a camera plugged in where this one was.
    if (!interface_.isPresent()) return Outcome::disconnected;

    node_.emplace(std::move(*search.node));
    descriptions_.clear();
    isOpen_ = true;
    isGone_ = false;
    return Outcome::done;
}

Outcome V4l2VideoControl::close() {
    isOpen_ = false;
    if (isGone_) node_.reset();
    return Outcome::done;
}

Outcome V4l2VideoControl::controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) {
    if (!isOpen_ || setup.length != data.size()) return Outcome::failed;
    const Outcome outcome = perform(setup, data);
    isGone_ = isGone_ || outcome == Outcome::disconnected;
    return outcome;
}

Outcome V4l2VideoControl::perform(const SetupPacket &setup, std::span<std::uint8_t> data) {
    const Rows rows = rowsFor(setup);
    if (rows.empty()) return Outcome::refused;

    Patience patience;
    if (setup.requestType == kSetRequestType) return set(rows, data, patience);

    switch (setup.request) {
        case kGetCur:
            return getCurrent(rows, data, patience);
        case kGetInfo:
            return getInfo(rows, data, patience);
        case kGetMin:
        case kGetMax:
        case kGetRes:
        case kGetDef:
            return getLimit(setup.request, rows, data, patience);
        default:
            return Outcome::refused;
    }
}

V4l2VideoControl::Rows V4l2VideoControl::rowsFor(const SetupPacket &setup) const {
    const bool isSet = setup.requestType == kSetRequestType && setup.request == kSetCur;
    const bool isGet = setup.requestType == kGetRequestType && setup.request != kSetCur;
    if (!isSet && !isGet) return {};
    if (lowByte(setup.index) != interfaceNumber_ || lowByte(setup.value) != 0) return {};

    const std::uint8_t unit = highByte(setup.index);
    const std::uint8_t selector = highByte(setup.value);
    if (unit == v4l2::kProcessingUnit && meansOtherWhiteBalance(classDescriptors_, selector)) return {};

    const Rows rows = v4l2::rowsOf(unit, selector);
    if (rows.empty()) return {};
    const std::size_t length = setup.request == kGetInfo ? 1u : rows.front().controlBytes;
    return setup.length == length ? rows : Rows();
}

Outcome V4l2VideoControl::set(Rows rows, std::span<const std::uint8_t> data, Patience &patience) {
    std::vector<v4l2_ext_control> controls = controlsOf(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto number = v4l2::numberFrom(rows[i], data);
        if (!number) return Outcome::refused;
        const Outcome allowed = applyLimits(rows[i], *number, patience);
        if (allowed != Outcome::done) return allowed;
        controls[i].value = *number;
    }
    return outcomeOfRequest(node_->set(controls, patience));
}

Outcome V4l2VideoControl::applyLimits(const Row &row, std::int32_t &number, Patience &patience) {
    v4l2_query_ext_ctrl control{};
    const Outcome asked = recall(row, control, patience);
    if (asked == Outcome::timedOut || asked == Outcome::disconnected) return asked;
    // A camera that does not tell its limits may still take the setting.
    if (asked != Outcome::done) return Outcome::done;

    const auto allowed = v4l2::nearestWithin(row, number, control.minimum, control.maximum);
    number = allowed.value_or(number);
    return allowed ? Outcome::done : Outcome::refused;
}

Outcome V4l2VideoControl::describe(const Row &row, v4l2_query_ext_ctrl &control, Patience &patience) {
    control = {};
    control.id = row.id;
    const Outcome outcome = outcomeOfRequest(node_->describe(control, patience));
    if (outcome == Outcome::done) descriptions_.insert_or_assign(row.id, control);
    return outcome;
}

Outcome V4l2VideoControl::recall(const Row &row, v4l2_query_ext_ctrl &control, Patience &patience) {
    const auto known = descriptions_.find(row.id);
    if (known == descriptions_.end()) return describe(row, control, patience);
    control = known->second;
    return Outcome::done;
}

Outcome V4l2VideoControl::getCurrent(Rows rows, std::span<std::uint8_t> data, Patience &patience) const {
    std::vector<v4l2_ext_control> controls = controlsOf(rows);
    const Outcome outcome = outcomeOfRequest(node_->get(controls, patience));
    if (outcome != Outcome::done) return outcome;

    for (std::size_t i = 0; i < rows.size(); ++i)
        if (!v4l2::putNumber(rows[i], controls[i].value, data)) return Outcome::failed;
    return Outcome::done;
}

Outcome V4l2VideoControl::getInfo(Rows rows, std::span<std::uint8_t> data, Patience &patience) {
    // Both halves of a control have the flags of the whole.
    v4l2_query_ext_ctrl control{};
    const Outcome outcome = describe(rows.front(), control, patience);
    if (outcome == Outcome::done) data[0] = v4l2::infoFrom(control.flags);
    return outcome;
}

Outcome V4l2VideoControl::getLimit(std::uint8_t request, Rows rows, std::span<std::uint8_t> data,
                                   Patience &patience) {
    if (rows.front().coding == Coding::exposureMode) {
        if (request == kGetRes) return getExposureModes(rows.front(), data, patience);
        // Modes are bits without an order; cameras do not have these two requests either.
        if (request != kGetDef) return Outcome::refused;
    }

    for (const Row &row : rows) {
        v4l2_query_ext_ctrl control{};
        const Outcome outcome = recall(row, control, patience);
        if (outcome != Outcome::done) return outcome;
        if (!v4l2::putLimit(row, limitOf(control, request), data)) return Outcome::failed;
    }
    return Outcome::done;
}

Outcome V4l2VideoControl::getExposureModes(const Row &row, std::span<std::uint8_t> data,
                                           Patience &patience) const {
    // The resolution of the exposure mode is the set of modes that the camera has. The driver keeps that to
    // itself, but offers the menu's items accordingly.
    std::uint8_t modes = 0;
    for (std::uint32_t mode = 0; mode < v4l2::kExposureModes; ++mode) {
        const Outcome outcome = outcomeOfRequest(node_->findMenuItem(row.id, mode, patience));
        if (outcome != Outcome::done && outcome != Outcome::refused) return outcome;
        if (outcome == Outcome::done) modes |= v4l2::exposureModeBit(mode);
    }
    data[row.offset] = modes;
    return modes == 0 ? Outcome::refused : Outcome::done;
}

}  // namespace usb
