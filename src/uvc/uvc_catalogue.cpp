#include "uvc/uvc_catalogue.h"

#include <cstdio>
#include <cstdlib>

namespace uvc {

static_assert(UVCControllerControls.back().unitKind != 0, "a row is missing");

namespace {

constexpr int kBrokenCatalogueStatus = 14;

}  // namespace

std::shared_ptr<const UVCType> controlType(std::size_t controlIndex) {
    static std::array<std::shared_ptr<const UVCType>, UVCControllerControls.size()> types;

    if (controlIndex >= types.size()) return nullptr;
    auto &type = types[controlIndex];
    if (!type) type = typeOrFatal(UVCControllerControls[controlIndex].typeDescription);
    return type;
}

std::shared_ptr<const UVCType> typeOrFatal(const char *description) {
    auto type = UVCType::uvcTypeWithCString(description);
    if (type) return type;

    std::fprintf(stderr, "FATAL ERROR:  unable to instantiate UVCType for description %s !!!\n", description);
    // Not std::exit: it would destroy static objects that controllers on the stack still use.
    std::fflush(nullptr);
    std::_Exit(kBrokenCatalogueStatus);
}

}  // namespace uvc
