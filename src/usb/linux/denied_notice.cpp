#include "usb/linux/denied_notice.h"

#include <cstdio>
#include <set>

namespace usb {

namespace {

void sayOnce(const std::string &path, const char *remedy) {
    static std::set<std::string> said;
    if (!said.insert(path).second) return;
    std::fprintf(stderr, "ERROR:  no permission to open %s for reading and writing: %s\n", path.c_str(),
                 remedy);
}

}  // namespace

void sayVideoNodeDenied(const std::string &path) {
    sayOnce(path, "log in at this computer's own screen, or join the group that owns the file");
}

void sayUsbFileDenied(const std::string &path) {
    sayOnce(path, "load the kernel's driver uvcvideo, or install the udev rule for this camera");
}

}  // namespace usb
