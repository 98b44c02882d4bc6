#include "platform/fatal.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

void fatalStop() {
    std::fflush(nullptr);
    std::abort();
}

}  // namespace platform
