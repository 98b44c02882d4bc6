// A program that recalls a scene twice, as the window does, and stops before and after the second time so
// that whoever started it can count its system calls. It counts the memory itself, libusb's included, and
// prints how often it was asked for. A program of its own: one that has threads, as libusb's tests have,
// cannot be forked and go on.
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "kernel/product_registry.h"
#include "ptz/ptz_functions.h"

namespace {

std::atomic<int> allocations = 0;

bool recall() {
    return setPanTiltPosition(36000, -18000) && setZoomPosition(300);
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own, behind the names that it lets others take
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);

void *malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
void *calloc(std::size_t count, std::size_t size) {
    ++allocations;
    return __libc_calloc(count, size);
}
void *realloc(void *memory, std::size_t size) {
    ++allocations;
    return __libc_realloc(memory, size);
}
}
// NOLINTEND(bugprone-reserved-identifier)

int main() {
    guest::useProductRegistry();
    if (!recall()) return 1;  // what is made once in the life of a process does not count
    const int before = allocations;
    ::raise(SIGSTOP);
    const bool done = recall();
    ::raise(SIGSTOP);
    std::printf("%d\n", allocations - before);
    return done ? 0 : 1;
}
