// What a recall costs ourselves: on a bus that takes no time, beside the same requests made straight.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <new>

#include "comparison.h"
#include "ptz/ptz_functions.h"
#include "support/simulated_camera.h"

namespace {

std::size_t allocations = 0;

}  // namespace

void *operator new(std::size_t size) {
    ++allocations;
    if (void *memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

template <typename Recall>
void recallAgainAndAgain(benchmark::State &state, const Recall &recall) {
    const std::size_t before = allocations;
    for (auto _ : state)
        if (!recall()) state.SkipWithError("refused");
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(allocations - before), benchmark::Counter::kAvgIterations);
}

void BM_RecallScene(benchmark::State &state) {
    const support::SimulatedCamera bench;
    recallAgainAndAgain(state, [] { return setPanTiltPosition(36000, -18000) && setZoomPosition(300); });
}

/// The six requests that are made of every order.
bool order(usb::VideoControl &camera, std::uint8_t selector, std::span<std::uint8_t> value) {
    std::array<std::uint8_t, 8> answer{};
    const auto ask = [&](std::uint8_t type, std::uint8_t request, std::span<std::uint8_t> data) {
        const usb::SetupPacket setup{
            type, request, static_cast<std::uint16_t>(selector << 8),
            static_cast<std::uint16_t>(support::kTerminal << 8 | camera.interfaceNumber()),
            static_cast<std::uint16_t>(data.size())};
        return camera.controlRequest(setup, data) == usb::Outcome::done;
    };
    bool done = camera.open() == usb::Outcome::done &&
                ask(usb::request::kGetRequestType, usb::request::kGetInfo, std::span(answer).first(1));
    for (const std::uint8_t limit :
         {usb::request::kGetMin, usb::request::kGetMax, usb::request::kGetRes, usb::request::kGetDef})
        done = done && ask(usb::request::kGetRequestType, limit, std::span(answer).first(value.size()));
    done = done && ask(usb::request::kSetRequestType, usb::request::kSetCur, value);
    return camera.close() == usb::Outcome::done && done;
}

void BM_BareRequests(benchmark::State &state) {
    const support::SimulatedCamera bench;
    std::array<std::uint8_t, 8> panTilt{0xA0, 0x8C, 0x00, 0x00, 0xB0, 0xB9, 0xFF, 0xFF};
    std::array<std::uint8_t, 2> zoom{0x2C, 0x01};
    recallAgainAndAgain(state, [&] {
        const auto camera = bench.bus->devices()->front()->videoControl();
        return order(*camera, support::kPanTiltAbs, panTilt) && order(*camera, support::kZoomAbs, zoom);
    });
}
BENCHMARK(BM_RecallScene)->Apply(bench::repeatedly);
BENCHMARK(BM_BareRequests)->Apply(bench::repeatedly);

}  // namespace
