#include "simulator/camera_descriptors.h"

#include <algorithm>
#include <array>
#include <span>

#include "simulator/camera_controls.h"

namespace simulator {

namespace {

// Descriptor types (USB 2.0, table 9-5, and its change notice on interface associations; USB Video Class 1.1,
// appendix A.4).
constexpr std::uint8_t kDevice = 0x01;
constexpr std::uint8_t kConfiguration = 0x02;
constexpr std::uint8_t kInterface = 0x04;
constexpr std::uint8_t kEndpoint = 0x05;
constexpr std::uint8_t kInterfaceAssociation = 0x0B;
constexpr std::uint8_t kClassInterface = 0x24;
constexpr std::uint8_t kClassEndpoint = 0x25;

// Interface class and subclasses (USB Video Class 1.1, appendixes A.1 and A.2).
constexpr std::uint8_t kVideoClass = 0x0E;
constexpr std::uint8_t kVideoControlSubclass = 0x01;
constexpr std::uint8_t kVideoStreamingSubclass = 0x02;
constexpr std::uint8_t kVideoCollectionSubclass = 0x03;

constexpr std::uint8_t kNoString = 0;

constexpr std::uint16_t kStatusPacketBytes = 16;
constexpr std::uint16_t kBulkPacketBytes = 512;  // the only size at high speed (USB 2.0, section 5.8.3)

/// The start of a descriptor; asDescriptor() fills in the length.
ByteWriter descriptor(std::uint8_t type) {
    ByteWriter fields(std::endian::little);
    fields.u1(0).u1(type);
    return fields;
}
ByteWriter descriptor(std::uint8_t type, std::uint8_t subtype) {
    return descriptor(type).u1(subtype);
}

/// Writes the length of the whole block into the 16-bit total at `offset` of its first descriptor.
Bytes withTotalLength(Bytes block, std::size_t offset) {
    const Bytes total = ByteWriter(std::endian::little).u2(block.size()).finished();
    std::ranges::copy(total, block.begin() + static_cast<std::ptrdiff_t>(offset));
    return block;
}

Bytes interfaceDescriptor(std::uint8_t number, std::uint8_t subclass, std::uint8_t name) {
    // Both interfaces have one endpoint and one alternate setting. A bulk video endpoint needs no setting
    // without it: it takes no bandwidth while nothing streams.
    return descriptor(kInterface)
        .u1(number)
        .u1(0)
        .u1(1)
        .u1(kVideoClass)
        .u1(subclass)
        .u1(0)
        .u1(name)
        .asDescriptor();
}

/// USB Video Class 1.1, section 3.7.2; wTotalLength is filled in by withTotalLength().
Bytes videoControlHeader(const CameraOptions &options) {
    return descriptor(kClassInterface, 0x01)
        .u2(0x0110)  // bcdUVC
        .u2(0)
        .u4(kClockHz)
        .u1(1)
        .u1(videoStreamingInterface(options))
        .asDescriptor();
}

/// USB Video Class 1.1, section 3.7.2.3.
Bytes cameraTerminal(const CameraOptions &options) {
    constexpr std::uint16_t kCameraTerminalType = 0x0201;
    const Bytes controls = controlBitmap(options, kCameraTerminal, 3);
    return descriptor(kClassInterface, 0x02)
        .u1(options.cameraTerminalId)
        .u2(kCameraTerminalType)
        .u1(0)          // bAssocTerminal
        .u1(kNoString)  // iTerminal
        .u2(0)          // wObjectiveFocalLengthMin, Max and wOcularFocalLength: optical zoom not described
        .u2(0)
        .u2(0)
        .u1(controls.size())
        .raw(controls)
        .asDescriptor();
}

/// USB Video Class 1.1, section 3.7.2.5.
Bytes processingUnit(const CameraOptions &options) {
    const Bytes controls = controlBitmap(options, kProcessingUnit, 3);
    return descriptor(kClassInterface, 0x05)
        .u1(options.processingUnitId)
        .u1(options.cameraTerminalId)  // bSourceID
        .u2(0)                         // wMaxMultiplier
        .u1(controls.size())
        .raw(controls)
        .u1(kNoString)
        .u1(0)  // bmVideoStandards: none
        .asDescriptor();
}

/// USB Video Class 1.1, section 3.7.2.2.
Bytes outputTerminal(const CameraOptions &options) {
    constexpr std::uint16_t kStreamingTerminalType = 0x0101;
    return descriptor(kClassInterface, 0x03)
        .u1(kOutputTerminal)
        .u2(kStreamingTerminalType)
        .u1(0)                         // bAssocTerminal
        .u1(options.processingUnitId)  // bSourceID
        .u1(kNoString)
        .asDescriptor();
}

/// The interrupt endpoint and its class-specific companion (USB Video Class 1.1, section 3.8.2).
Bytes statusEndpoint() {
    constexpr std::uint8_t kInterruptTransfer = 0x03;
    constexpr std::uint8_t kInterval = 8;  // 2^7 microframes: 16 ms
    Bytes bytes = descriptor(kEndpoint)
                      .u1(kStatusEndpoint)
                      .u1(kInterruptTransfer)
                      .u2(kStatusPacketBytes)
                      .u1(kInterval)
                      .asDescriptor();
    append(bytes, descriptor(kClassEndpoint, kInterruptTransfer).u2(kStatusPacketBytes).asDescriptor());
    return bytes;
}

/// USB Video Class 1.1, section 3.9.2.1; wTotalLength is filled in by withTotalLength().
Bytes streamingInputHeader() {
    return descriptor(kClassInterface, 0x01)
        .u1(1)  // bNumFormats
        .u2(0)
        .u1(kVideoEndpoint)
        .u1(0)                // bmInfo: no dynamic format change
        .u1(kOutputTerminal)  // bTerminalLink
        .u1(0)                // bStillCaptureMethod: none
        .u1(0)                // bTriggerSupport
        .u1(0)                // bTriggerUsage
        .u1(1)                // bControlSize, then bmaControls of the one format: none
        .u1(0)
        .asDescriptor();
}

/// The format descriptor of YUY2 (USB Video Class 1.1, Uncompressed Payload, section 3.1.1).
Bytes uncompressedFormat() {
    constexpr std::array<std::uint8_t, 16> kYuy2{0x59, 0x55, 0x59, 0x32, 0x00, 0x00, 0x10, 0x00,
                                                 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
    return descriptor(kClassInterface, 0x04)
        .u1(kFormatIndex)
        .u1(1)  // bNumFrameDescriptors
        .raw(kYuy2)
        .u1(16)  // bBitsPerPixel
        .u1(1)   // bDefaultFrameIndex
        .u1(0)   // bAspectRatioX, bAspectRatioY: not interlaced, so not given
        .u1(0)
        .u1(0)  // bmInterlaceFlags
        .u1(0)  // bCopyProtect
        .asDescriptor();
}

/// USB Video Class 1.1, Uncompressed Payload, section 3.1.2.
Bytes uncompressedFrame() {
    constexpr std::uint32_t kBitRate = kFrameBytes * 8 * kFramesPerSecond;
    return descriptor(kClassInterface, 0x05)
        .u1(kFrameIndex)
        .u1(0)  // bmCapabilities
        .u2(kFrameWidth)
        .u2(kFrameHeight)
        .u4(kBitRate)  // dwMinBitRate, dwMaxBitRate
        .u4(kBitRate)
        .u4(kFrameBytes)
        .u4(kFrameInterval)  // dwDefaultFrameInterval
        .u1(1)               // bFrameIntervalType: one discrete interval
        .u4(kFrameInterval)
        .asDescriptor();
}

/// USB Video Class 1.1, section 3.9.2.6: BT.709 primaries and transfer, SMPTE 170M matrix.
Bytes colourMatching() {
    return descriptor(kClassInterface, 0x0D).u1(1).u1(1).u1(4).asDescriptor();
}

Bytes videoStreaming(const CameraOptions &options) {
    Bytes block = streamingInputHeader();
    append(block, uncompressedFormat());
    append(block, uncompressedFrame());
    append(block, colourMatching());

    constexpr std::size_t kTotalLengthOffset = 4;
    constexpr std::uint8_t kBulkTransfer = 0x02;
    Bytes bytes = interfaceDescriptor(videoStreamingInterface(options), kVideoStreamingSubclass, kNoString);
    append(bytes, withTotalLength(std::move(block), kTotalLengthOffset));
    append(
        bytes,
        descriptor(kEndpoint).u1(kVideoEndpoint).u1(kBulkTransfer).u2(kBulkPacketBytes).u1(0).asDescriptor());
    return bytes;
}

/// Takes an interface number below a VideoControl interface that is not number 0. No host has a driver for
/// it.
Bytes idleInterface(std::uint8_t number) {
    constexpr std::uint8_t kVendorSpecific = 0xFF;
    return descriptor(kInterface)
        .u1(number)
        .u1(0)
        .u1(0)
        .u1(kVendorSpecific)
        .u1(0)
        .u1(0)
        .u1(kNoString)
        .asDescriptor();
}

Bytes interfaceAssociation(const CameraOptions &options) {
    return descriptor(kInterfaceAssociation)
        .u1(options.videoControlInterface)
        .u1(2)  // bInterfaceCount
        .u1(kVideoClass)
        .u1(kVideoCollectionSubclass)
        .u1(0)
        .u1(kProductString)  // iFunction: the VideoControl interface has the same one
        .asDescriptor();
}

}  // namespace

std::uint8_t videoStreamingInterface(const CameraOptions &options) {
    return static_cast<std::uint8_t>(options.videoControlInterface + 1);
}

Bytes buildDeviceDescriptor(const CameraOptions &options) {
    return descriptor(kDevice)
        .u2(0x0200)  // bcdUSB
        .u1(0xEF)    // a composite device with an association: miscellaneous class, common subclass
        .u1(0x02)
        .u1(0x01)
        .u1(64)  // bMaxPacketSize0
        .u2(options.record.vendorId)
        .u2(options.record.productId)
        .u2(0x0100)     // bcdDevice
        .u1(kNoString)  // iManufacturer
        .u1(kProductString)
        .u1(kNoString)  // iSerialNumber
        .u1(1)          // bNumConfigurations
        .asDescriptor();
}

Bytes buildVideoControlDescriptors(const CameraOptions &options) {
    Bytes block;
    if (options.hasHeader) append(block, videoControlHeader(options));
    append(block, cameraTerminal(options));
    append(block, processingUnit(options));
    append(block, outputTerminal(options));

    constexpr std::size_t kTotalLengthOffset = 5;
    return options.hasHeader ? withTotalLength(std::move(block), kTotalLengthOffset) : block;
}

Bytes buildConfigurationDescriptor(const CameraOptions &options) {
    constexpr std::uint8_t kBusPowered = 0x80;
    constexpr std::uint8_t kMaxPower = 250;  // 500 mA
    Bytes bytes = descriptor(kConfiguration)
                      .u2(0)                                   // wTotalLength
                      .u1(options.videoControlInterface + 2u)  // bNumInterfaces
                      .u1(kConfigurationValue)
                      .u1(kNoString)
                      .u1(kBusPowered)
                      .u1(kMaxPower)
                      .asDescriptor();
    for (std::uint8_t number = 0; number < options.videoControlInterface; ++number)
        append(bytes, idleInterface(number));
    append(bytes, interfaceAssociation(options));
    append(bytes, interfaceDescriptor(options.videoControlInterface, kVideoControlSubclass, kProductString));
    if (options.isMisplaced) append(bytes, statusEndpoint());
    append(bytes, buildVideoControlDescriptors(options));
    if (!options.isMisplaced) append(bytes, statusEndpoint());
    append(bytes, videoStreaming(options));

    constexpr std::size_t kTotalLengthOffset = 2;
    return withTotalLength(std::move(bytes), kTotalLengthOffset);
}

}  // namespace simulator
