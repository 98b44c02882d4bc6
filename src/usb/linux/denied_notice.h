#pragma once

#include <string>

namespace usb {

/// Says on standard error, once for each file in the life of the process, that this user may not open it and
/// what would help. The person at the window sees no more than a camera that does not answer.
void sayVideoNodeDenied(const std::string &path);
void sayUsbFileDenied(const std::string &path);

}  // namespace usb
