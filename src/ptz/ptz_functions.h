#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// Plain text access to the one supported camera (of a model in model/camera_models.h; the last one listed
/// where there are several). No state is kept: every call enumerates the devices anew, sends the camera
/// several requests and waits for each (see usb::kRequestTimeout). A camera that is plugged in while the
/// program runs is found only where the system announces new devices (udev).
///
/// A missing camera prints nothing; any other failure prints one "ERROR:  " line on standard error. Another
/// one, once for each file, names a file that this user may not open.
///
/// Pan and tilt are in the camera's units of 1/3600 degree, zoom in the camera's own units.
///
/// Reading functions answer nothing when no supported camera is present.

namespace ptz {

/// What the reading functions answer when the camera is there but its control is missing or cannot be read.
inline constexpr char kUnreadablePosition[] = "AAAAAAAAA";

}  // namespace ptz

/// "PAN,TILT" as two decimal integers, e.g. "-360,0".
[[nodiscard]] std::optional<std::string> getPanTiltPosition();

/// Sends the camera to a position. One beyond its range goes to the nearest limit, one between two steps is
/// rounded. False: no camera, no such control, or the camera refused.
[[nodiscard]] bool setPanTiltPosition(std::int32_t pan, std::int32_t tilt);

/// The zoom as a bare decimal number, e.g. "150".
[[nodiscard]] std::optional<std::string> getZoomPosition();

/// The same as setPanTiltPosition for a zoom of 0 to 65535. Any other number first wraps to 16 bits: 65536 is
/// 0, and -5 is 65531, so that it goes to the camera's maximum.
[[nodiscard]] bool setZoomPosition(std::int32_t zoom);

/// Minimum, maximum, resolution and default of pan, then of tilt, joined by ",". The first character of the
/// maximum pan is missing: that is how it has always been recorded, and it stays. A camera that does not
/// report all four leaves the pieces that depend on them empty. Nothing when the camera or the control is
/// missing.
[[nodiscard]] std::optional<std::string> getPanTiltData();

/// Minimum, maximum, resolution and default of the zoom, joined by ",". As above.
[[nodiscard]] std::optional<std::string> getZoomData();
