#include "platform/services.h"

#include <utility>

namespace platform {
namespace {

Services &installed() {
    static Services instance;
    return instance;
}

}  // namespace

void installServices(Services services) {
    installed() = std::move(services);
}

const Services &services() {
    return installed();
}

}  // namespace platform
