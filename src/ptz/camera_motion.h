#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

/// Moves the camera in display units and ends the program when the camera fails.
///
/// A display unit of pan or tilt is about one degree; scenes are stored in it. Raw units are the camera's
/// own: 1/3600 degree for pan and tilt. Zoom is never converted. All functions block until the camera has
/// answered. A camera that is not found or refuses ends in CameraErrorDialog; an answer that is no number is
/// a fatal stop.

/// No camera function is called while this is on: reading gives zeros and setting does nothing.
extern bool DemoMode;

/// Raw units per unit of the intermediate scale. Reading uses PanStep for tilt as well; see
/// ZEL_GetPanTiltPosition.
inline constexpr std::int64_t PanStep = 806;
inline constexpr std::int64_t TiltStep = 831;

/// The display range and the intermediate scale that it is stretched to.
inline constexpr double windowsMinPan = -168.0;
inline constexpr double windowsMaxPan = 168.0;
inline constexpr double minPan = -752.0;
inline constexpr double maxPan = 752.0;

/// Steps of the window's buttons: display units, and raw units for the zoom.
inline constexpr std::int64_t AvanceRapidoPan = 8;
inline constexpr std::int64_t AvanceRapidoTilt = 5;
inline constexpr std::int64_t AvanceRapidoZoom = 40;

namespace ptz {

/// "Pan_Value" and "Tilt_Value" in display units, or "Zoom_Value" in raw units.
using PositionDictionary = std::map<std::string, std::int64_t, std::less<>>;

/// Moves by whole display units from where the camera points. Nothing is clamped here; a sum that overflows
/// is a fatal stop.
void moveCameraBy(std::int64_t panStep, std::int64_t tiltStep);

}  // namespace ptz

/// Raw pan units to display units, unrounded.
[[nodiscard]] double ConvertPan_MacToWin(double Value);

/// Where the camera points: "Pan_Value" and "Tilt_Value", rounded, halves away from zero. A tilt that was set
/// reads back about 3 % larger, because setting multiplies by TiltStep and reading divides by PanStep: stored
/// scenes depend on it, so it stays.
[[nodiscard]] ptz::PositionDictionary ZEL_GetPanTiltPosition();

/// "Zoom_Value" as the camera gives it.
[[nodiscard]] ptz::PositionDictionary ZEL_GetZoomPosition();

/// Moves to a position in display units. Nothing is clamped here: the camera limits the movement. A position
/// whose raw value does not fit 32 bits is a fatal stop.
void ZEL_SetPanTiltPosition(std::int64_t Pan, std::int64_t Tilt);

/// Changes the zoom by `avance` raw units, not below 0. Up to 65535 the camera limits it. Above that
/// the number wraps to 16 bits, see setZoomPosition(): this is wanted. A zoom above the signed 32-bit range
/// is a fatal stop.
void ZoomMove(std::int64_t avance);

/// The menu's moves: one display unit, finer than the window's buttons. Those of the zoom belong to the
/// window's state (ContentView).
void Mover_Izquierda();
void Mover_Derecha();
void Mover_Arriba();
void Mover_Abajo();
