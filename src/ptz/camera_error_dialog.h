#pragma once

/// Tells the user that the camera does not answer, waits for "Aceptar", and ends the process with exit status
/// 0. Never returns; no clean-up runs and nothing is saved, but the standard streams are flushed.
[[noreturn]] void CameraErrorDialog();
