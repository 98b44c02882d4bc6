#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "uvc/uvc_type.h"

/// The controls that the library knows, by name.
inline constexpr char UVCTerminalControlScanningMode[] = "scanning-mode";
inline constexpr char UVCTerminalControlAutoExposureMode[] = "auto-exposure-mode";
inline constexpr char UVCTerminalControlAutoExposurePriority[] = "auto-exposure-priority";
inline constexpr char UVCTerminalControlExposureTimeAbsolute[] = "exposure-time-abs";
inline constexpr char UVCTerminalControlExposureTimeRelative[] = "exposure-time-rel";
inline constexpr char UVCTerminalControlFocusAbsolute[] = "focus-abs";
inline constexpr char UVCTerminalControlFocusRelative[] = "focus-rel";
inline constexpr char UVCTerminalControlAutoFocus[] = "auto-focus";
inline constexpr char UVCTerminalControlIrisAbsolute[] = "iris-abs";
inline constexpr char UVCTerminalControlIrisRelative[] = "iris-rel";
inline constexpr char UVCTerminalControlZoomAbsolute[] = "zoom-abs";
inline constexpr char UVCTerminalControlZoomRelative[] = "zoom-rel";
inline constexpr char UVCTerminalControlPanTiltAbsolute[] = "pan-tilt-abs";
inline constexpr char UVCTerminalControlPanTiltRelative[] = "pan-tilt-rel";
inline constexpr char UVCTerminalControlRollAbsolute[] = "roll-abs";
inline constexpr char UVCTerminalControlRollRelative[] = "roll-rel";
inline constexpr char UVCTerminalControlPrivacy[] = "privacy";
inline constexpr char UVCProcessingUnitControlBacklightCompensation[] = "backlight-compensation";
inline constexpr char UVCProcessingUnitControlBrightness[] = "brightness";
inline constexpr char UVCProcessingUnitControlContrast[] = "contrast";
inline constexpr char UVCProcessingUnitControlGain[] = "gain";
inline constexpr char UVCProcessingUnitControlPowerLineFrequency[] = "power-line-frequency";
inline constexpr char UVCProcessingUnitControlHue[] = "hue";
inline constexpr char UVCProcessingUnitControlSaturation[] = "saturation";
inline constexpr char UVCProcessingUnitControlSharpness[] = "sharpness";
inline constexpr char UVCProcessingUnitControlGamma[] = "gamma";
inline constexpr char UVCProcessingUnitControlWhiteBalanceTemperature[] = "white-balance-temp";
inline constexpr char UVCProcessingUnitControlAutoWhiteBalanceTemperature[] = "auto-white-balance-temp";
inline constexpr char UVCProcessingUnitControlWhiteBalanceComponent[] = "white-balance-component";
inline constexpr char UVCProcessingUnitControlAutoWhiteBalanceComponent[] = "auto-white-balance-component";
inline constexpr char UVCProcessingUnitControlDigitalMultiplier[] = "digital-multiplier";
inline constexpr char UVCProcessingUnitControlDigitalMultiplierLimit[] = "digital-multiplier-limit";
inline constexpr char UVCProcessingUnitControlAutoHue[] = "auto-hue";
inline constexpr char UVCProcessingUnitControlAnalogVideoStandard[] = "analog-video-standard";
inline constexpr char UVCProcessingUnitControlAnalogLockStatus[] = "analog-lock-status";

namespace uvc {

inline constexpr std::uint32_t kCameraTerminal = 1;
inline constexpr std::uint32_t kProcessingUnit = 2;

/// One control of the catalogue.
struct CatalogueRow {
    const char *name;
    std::uint32_t unitKind;       ///< kCameraTerminal or kProcessingUnit; also the unit id of its requests
    std::uint32_t selector;       ///< USB Video Class 1.1, appendices A.9.4 and A.9.5
    const char *typeDescription;  ///< of its value, see UVCType
    std::uint8_t enableBit;       ///< bit of the unit's bmControls, sections 3.7.2.3 and 3.7.2.5
};

}  // namespace uvc

/// The catalogue; a control's index is its row.
inline constexpr std::array<uvc::CatalogueRow, 35> UVCControllerControls = {{
    // clang-format off
    {UVCTerminalControlScanningMode, uvc::kCameraTerminal, 0x01, "{B}", 0},
    {UVCTerminalControlAutoExposureMode, uvc::kCameraTerminal, 0x02, "{U1}", 1},
    {UVCTerminalControlAutoExposurePriority, uvc::kCameraTerminal, 0x03, "{U1}", 2},
    {UVCTerminalControlExposureTimeAbsolute, uvc::kCameraTerminal, 0x04, "{U4}", 3},
    {UVCTerminalControlExposureTimeRelative, uvc::kCameraTerminal, 0x05, "{S1}", 4},
    {UVCTerminalControlFocusAbsolute, uvc::kCameraTerminal, 0x06, "{U2}", 5},
    {UVCTerminalControlFocusRelative, uvc::kCameraTerminal, 0x07, "{S1 focus-relative; U1 focus-speed}", 6},
    {UVCTerminalControlAutoFocus, uvc::kCameraTerminal, 0x08, "{B}", 17},
    {UVCTerminalControlIrisAbsolute, uvc::kCameraTerminal, 0x09, "{U2}", 7},
    {UVCTerminalControlIrisRelative, uvc::kCameraTerminal, 0x0A, "{S1}", 8},
    {UVCTerminalControlZoomAbsolute, uvc::kCameraTerminal, 0x0B, "{U2}", 9},
    {UVCTerminalControlZoomRelative, uvc::kCameraTerminal, 0x0C, "{S1 zoom; B digital-zoom; U1 speed}", 10},
    {UVCTerminalControlPanTiltAbsolute, uvc::kCameraTerminal, 0x0D, "{S4 pan; S4 tilt}", 11},
    {UVCTerminalControlPanTiltRelative, uvc::kCameraTerminal, 0x0E, "{S1 pan-relative; U1 pan-speed; S1 tilt-relative; U1 tilt-speed}", 12},
    {UVCTerminalControlRollAbsolute, uvc::kCameraTerminal, 0x0F, "{S2}", 13},
    {UVCTerminalControlRollRelative, uvc::kCameraTerminal, 0x10, "{S1 roll-relative; U1 roll-speed}", 14},
    {UVCTerminalControlPrivacy, uvc::kCameraTerminal, 0x11, "{B}", 18},
    {UVCProcessingUnitControlBacklightCompensation, uvc::kProcessingUnit, 0x01, "{U2}", 8},
    {UVCProcessingUnitControlBrightness, uvc::kProcessingUnit, 0x02, "{S2}", 0},
    {UVCProcessingUnitControlContrast, uvc::kProcessingUnit, 0x03, "{U2}", 1},
    {UVCProcessingUnitControlGain, uvc::kProcessingUnit, 0x04, "{U2}", 9},
    {UVCProcessingUnitControlPowerLineFrequency, uvc::kProcessingUnit, 0x05, "{U1}", 10},
    {UVCProcessingUnitControlHue, uvc::kProcessingUnit, 0x06, "{S2}", 2},
    {UVCProcessingUnitControlSaturation, uvc::kProcessingUnit, 0x07, "{U2}", 3},
    {UVCProcessingUnitControlSharpness, uvc::kProcessingUnit, 0x08, "{U2}", 4},
    {UVCProcessingUnitControlGamma, uvc::kProcessingUnit, 0x09, "{U2}", 5},
    {UVCProcessingUnitControlWhiteBalanceTemperature, uvc::kProcessingUnit, 0x0A, "{U2}", 6},
    {UVCProcessingUnitControlAutoWhiteBalanceTemperature, uvc::kProcessingUnit, 0x0B, "{B}", 12},
    {UVCProcessingUnitControlWhiteBalanceComponent, uvc::kProcessingUnit, 0x0C, "{U2 blue; U2 red}", 7},
    {UVCProcessingUnitControlAutoWhiteBalanceComponent, uvc::kProcessingUnit, 0x0D, "{B}", 13},
    {UVCProcessingUnitControlDigitalMultiplier, uvc::kProcessingUnit, 0x0E, "{U2}", 14},
    {UVCProcessingUnitControlDigitalMultiplierLimit, uvc::kProcessingUnit, 0x0F, "{U2}", 15},
    {UVCProcessingUnitControlAutoHue, uvc::kProcessingUnit, 0x10, "{B}", 11},
    {UVCProcessingUnitControlAnalogVideoStandard, uvc::kProcessingUnit, 0x11, "{U1}", 16},
    {UVCProcessingUnitControlAnalogLockStatus, uvc::kProcessingUnit, 0x12, "{U1}", 17},
    // clang-format on
}};

namespace uvc {

/// The type of a row's values, built at the first call and kept for the life of the program. Null when
/// `controlIndex` is no row.
[[nodiscard]] std::shared_ptr<const UVCType> controlType(std::size_t controlIndex);

/// The type of a description that has to be right. If it is not, says so on standard error and ends the
/// program with exit status 14.
[[nodiscard]] std::shared_ptr<const UVCType> typeOrFatal(const char *description);

}  // namespace uvc
