#include "usb/fake_uvcvideo.h"

#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

namespace fake {

namespace {

using simulator::Control;
using simulator::ControlField;
namespace request = usb::request;

/// Which number of which control of the simulated camera a V4L2 control is.
struct Mapping {
    std::uint32_t id;
    std::uint8_t unit;
    std::uint8_t selector;
    std::size_t field;
};

// In the order of the bmControls bits, in which the driver sends what a call has changed.
constexpr std::array<Mapping, 5> kMappings{{
    {V4L2_CID_ZOOM_ABSOLUTE, simulator::kCameraTerminal, 0x0B, 0},
    {V4L2_CID_PAN_ABSOLUTE, simulator::kCameraTerminal, 0x0D, 0},
    {V4L2_CID_TILT_ABSOLUTE, simulator::kCameraTerminal, 0x0D, 1},
    {V4L2_CID_BRIGHTNESS, simulator::kProcessingUnit, 0x02, 0},
    {V4L2_CID_AUTO_WHITE_BALANCE, simulator::kProcessingUnit, 0x0B, 0},
}};

const Mapping *findMapping(std::uint32_t id) {
    const auto found = std::ranges::find(kMappings, id, &Mapping::id);
    return found == kMappings.end() ? nullptr : &*found;
}

Control controlOf(const Mapping &mapping) {
    return *simulator::findControl({}, mapping.unit, mapping.selector);
}

std::size_t offsetOf(const Mapping &mapping) {
    return mapping.field == 0 ? 0 : controlOf(mapping).fields[0].bytes;
}

std::int32_t numberIn(const std::vector<std::uint8_t> &bytes, const Mapping &mapping) {
    const ControlField field = controlOf(mapping).fields.at(mapping.field);
    std::int64_t number = 0;
    for (std::size_t i = 0; i < field.bytes; ++i)
        number |= std::int64_t{bytes[offsetOf(mapping) + i]} << (8 * i);
    const std::int64_t limit = std::int64_t{1} << (8 * field.bytes - 1);
    if (field.range.minimum < 0 && number >= limit) number -= 2 * limit;
    return static_cast<std::int32_t>(number);
}

void putNumber(std::vector<std::uint8_t> &bytes, const Mapping &mapping, std::int32_t number) {
    for (std::size_t i = 0; i < controlOf(mapping).fields.at(mapping.field).bytes; ++i)
        bytes[offsetOf(mapping) + i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> 8 * i);
}

std::uint16_t word(std::uint8_t high, std::uint8_t low) {
    return static_cast<std::uint16_t>(high << 8 | low);
}

}  // namespace

Uvcvideo::Uvcvideo(std::shared_ptr<simulator::CameraModel> camera) : camera_(std::move(camera)) {
    const auto prepare = [this](Node &node, std::uint32_t capabilities) {
        node.handler.reset(umockdev_ioctl_base_new());
        node.driver = this;
        node.capabilities = capabilities;
        g_signal_connect(node.handler.get(), "handle-ioctl", G_CALLBACK(&Uvcvideo::handleIoctl), &node);
    };
    prepare(capture_, V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING);
    prepare(metadata_, V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING);
}

Uvcvideo::~Uvcvideo() {
    g_signal_handlers_disconnect_by_data(capture_.handler.get(), &capture_);
    g_signal_handlers_disconnect_by_data(metadata_.handler.get(), &metadata_);
}

gboolean Uvcvideo::handleIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer data) {
    const Node &node = *static_cast<Node *>(data);
    const int error = node.driver->answer(client, node);
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

int Uvcvideo::answer(UMockdevIoctlClient *client, const Node &node) {
    const std::lock_guard lock(mutex_);
    UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(client);
    const auto code = umockdev_ioctl_client_get_request(client);
    if (gone_ || camera_->isUnplugged()) return ENODEV;
    if (code == VIDIOC_QUERYCAP) return tellCapabilities(argument, node);

    switch (code) {
        case VIDIOC_QUERY_EXT_CTRL:
            return describe(argument);
        case VIDIOC_QUERYMENU:
            return tellMenuItem(argument);
        case VIDIOC_G_EXT_CTRLS:
            return carryControls(argument, false);
        case VIDIOC_S_EXT_CTRLS:
            return carryControls(argument, true);
        default:
            return ENOTTY;
    }
}

int Uvcvideo::tellCapabilities(UMockdevIoctlData *argument, const Node &node) {
    const auto capability = resolve(argument, 0, sizeof(v4l2_capability));
    if (!capability) return EFAULT;
    write(capability.get(), offsetof(v4l2_capability, device_caps), node.capabilities);
    write(capability.get(), offsetof(v4l2_capability, capabilities),
          capture_.capabilities | metadata_.capabilities | V4L2_CAP_DEVICE_CAPS);
    return 0;
}

int Uvcvideo::describe(UMockdevIoctlData *argument) {
    const auto description = resolve(argument, 0, sizeof(v4l2_query_ext_ctrl));
    if (!description) return EFAULT;
    const auto id = read<std::uint32_t>(description.get(), offsetof(v4l2_query_ext_ctrl, id));
    if (id == V4L2_CID_EXPOSURE_AUTO) return describeExposure(description.get());
    const Mapping *mapping = findMapping(id);
    if (mapping == nullptr) return EINVAL;

    const ControlKey key{mapping->unit, mapping->selector};
    if (const int error = readLimits(key); error != 0) return error;
    auto filled = read<v4l2_query_ext_ctrl>(description.get());
    filled.type = V4L2_CTRL_TYPE_INTEGER;
    filled.minimum = numberIn(limits_[key].minimum, *mapping);
    filled.maximum = numberIn(limits_[key].maximum, *mapping);
    filled.step = static_cast<__u64>(numberIn(limits_[key].resolution, *mapping));
    filled.default_value = numberIn(limits_[key].standard, *mapping);
    filled.flags = 0;
    write(description.get(), 0, filled);
    return 0;
}

int Uvcvideo::describeExposure(UMockdevIoctlData *description) const {
    if (exposureModes_ == 0) return EINVAL;
    auto filled = read<v4l2_query_ext_ctrl>(description);
    filled.type = V4L2_CTRL_TYPE_MENU;
    filled.minimum = 0;
    filled.maximum = 3;
    filled.step = 1;
    filled.default_value = exposureMode_;
    filled.flags = 0;
    write(description, 0, filled);
    return 0;
}

int Uvcvideo::tellMenuItem(UMockdevIoctlData *argument) const {
    const auto item = resolve(argument, 0, sizeof(v4l2_querymenu));
    if (!item) return EFAULT;
    const auto wanted = read<v4l2_querymenu>(item.get());
    const bool offered = wanted.id == V4L2_CID_EXPOSURE_AUTO && (exposureModes_ >> wanted.index & 1u) != 0;
    return offered ? 0 : EINVAL;
}

int Uvcvideo::carryControls(UMockdevIoctlData *argument, bool set) {
    const auto list = resolve(argument, 0, sizeof(v4l2_ext_controls));
    if (!list) return EFAULT;
    const auto count = read<std::uint32_t>(list.get(), offsetof(v4l2_ext_controls, count));
    const auto items =
        resolve(list.get(), offsetof(v4l2_ext_controls, controls), count * sizeof(v4l2_ext_control));
    if (!items) return EFAULT;

    Call call;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t at = i * sizeof(v4l2_ext_control);
        auto control = read<v4l2_ext_control>(items.get(), at);
        const int error = set ? setControl(control, call) : getControl(control, call);
        if (error != 0) return error;
        write(items.get(), at, control);
    }
    return set ? sendDirty(call) : 0;
}

int Uvcvideo::getControl(v4l2_ext_control &control, Call &call) {
    if (control.id == V4L2_CID_EXPOSURE_AUTO && exposureModes_ != 0) {
        control.value = exposureMode_;
        return 0;
    }
    const Mapping *mapping = findMapping(control.id);
    if (mapping == nullptr) return EINVAL;
    const ControlKey key{mapping->unit, mapping->selector};
    if (const int error = load(key, call); error != 0) return error;
    control.value = numberIn(call[key].bytes, *mapping);
    return 0;
}

int Uvcvideo::setControl(v4l2_ext_control &control, Call &call) {
    if (control.id == V4L2_CID_EXPOSURE_AUTO && exposureModes_ != 0) {
        if (control.value < 0 || control.value > 3) return ERANGE;
        if ((exposureModes_ >> control.value & 1) == 0) return EINVAL;
        exposureMode_ = control.value;
        return 0;
    }
    const Mapping *mapping = findMapping(control.id);
    if (mapping == nullptr) return EINVAL;
    const ControlKey key{mapping->unit, mapping->selector};
    if (const int error = readLimits(key); error != 0) return error;

    const std::int32_t lowest = numberIn(limits_[key].minimum, *mapping);
    const std::int32_t highest = numberIn(limits_[key].maximum, *mapping);
    const std::int32_t step = std::max(numberIn(limits_[key].resolution, *mapping), 1);
    control.value = std::clamp(control.value, lowest, highest);
    control.value = std::clamp(lowest + (control.value - lowest + step / 2) / step * step, lowest, highest);

    const bool isWhole = controlOf(*mapping).fields[1].bytes == 0;
    if (isWhole) {
        call[key].bytes.resize(controlOf(*mapping).size());
    } else if (const int error = load(key, call); error != 0) {
        return error;
    }
    putNumber(call[key].bytes, *mapping, control.value);
    call[key].dirty = true;
    return 0;
}

int Uvcvideo::sendDirty(const Call &call) {
    for (const auto &[key, loaded] : call) {
        Bytes bytes = loaded.bytes;
        if (!loaded.dirty) continue;
        if (const int error = transfer(request::kSetCur, key, bytes); error != 0) return error;
    }
    return 0;
}

int Uvcvideo::load(const ControlKey &key, Call &call) {
    if (call.contains(key)) return 0;
    Bytes bytes(simulator::findControl({}, key.first, key.second)->size());
    const int error = transfer(request::kGetCur, key, bytes);
    if (error == 0) call[key].bytes = bytes;
    return error;
}

int Uvcvideo::readLimits(const ControlKey &key) {
    if (limits_.contains(key)) return 0;
    Limits limits;
    const std::array<std::pair<std::uint8_t, Bytes *>, 4> parts{{{request::kGetDef, &limits.standard},
                                                                 {request::kGetMin, &limits.minimum},
                                                                 {request::kGetMax, &limits.maximum},
                                                                 {request::kGetRes, &limits.resolution}}};
    for (const auto &[code, bytes] : parts) {
        bytes->resize(simulator::findControl({}, key.first, key.second)->size());
        if (const int error = transfer(code, key, *bytes); error != 0) return error;
    }
    limits_[key] = limits;
    return 0;
}

int Uvcvideo::transfer(std::uint8_t code, const ControlKey &key, Bytes &bytes) {
    const std::uint8_t type = code == request::kSetCur ? 0x21 : 0xA1;
    const usb::SetupPacket setup{type, code, word(key.second, 0),
                                 word(key.first, camera_->videoControlInterface()),
                                 static_cast<std::uint16_t>(bytes.size())};
    // The driver itself gives up after 5 s, which no test waits for.
    if (camera_->answerDelay(setup) > std::chrono::milliseconds(usb::kRequestTimeout)) return ETIMEDOUT;
    if (camera_->controlRequest(setup, bytes)) return 0;
    if (camera_->isUnplugged()) return ENODEV;
    // What the driver makes of the error codes "invalid request" and "wrong state".
    return code == request::kSetCur ? EILSEQ : EIO;
}

}  // namespace fake
