// How long a person waits for a picker to open, by the number of its entries. Compare the rows of one run.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <string>
#include <vector>

#include "ui/picker.h"

namespace {

std::vector<std::string> names(std::int64_t count) {
    std::vector<std::string> list;
    for (std::int64_t i = 0; i < count; ++i)
        list.push_back("Aula " + std::to_string(i) + " de la planta baja");
    return list;
}

void BM_FillAndOpen(benchmark::State &state) {
    ui::Picker picker;
    picker.show();
    const auto list = names(state.range(0));
    for (auto _ : state) {
        picker.show({}, 0);
        picker.show(list, 0);
        picker.showPopup();
        QApplication::processEvents();
        picker.hidePopup();
    }
}
BENCHMARK(BM_FillAndOpen)->Arg(5)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

}  // namespace
