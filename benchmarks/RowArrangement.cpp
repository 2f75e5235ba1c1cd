// How long the row takes to be arranged. Target: 400 items in less than 1 ms.

#include "tests/ui/InventedMeasures.h"
#include "ui/Arrangement.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using namespace ui;

// As the cells of the second row are built.
View rowOf(std::size_t count) {
    std::vector<View> cells;
    for (std::size_t place = 0; place < count; ++place) {
        const View label = View(Symbol{.name = "app", .font = {.size = 18.0}})
                               .frame({.width = 32, .height = 28})
                               .padding(Edges::all(4))
                               .contentShape(RoundedRectangle{.cornerRadius = 8});
        cells.push_back(View(Button{.label = label, .style = ButtonStyle::Plain})
                            .overlay(FilledShape{})
                            .help("Program " + std::to_string(place) + "\nWhat its clicks do")
                            .accessibilityLabel("Program " + std::to_string(place))
                            .id(std::uint64_t{place}));
    }
    const View strip = HorizontalScroll{.content = HStack{.spacing = 3, .children = cells}};
    return HStack{.spacing = 7, .children = {strip, View(Divider()).frame({.height = 30})}};
}

void arrangeRow(benchmark::State& state) {
    const InventedMeasures measures;
    const View row = rowOf(static_cast<std::size_t>(state.range(0)));
    constexpr Surface surface = {.size = {.width = 900, .height = 78}};
    for (auto _ : state) { // NOLINT(*-identifier-naming): the library's own idiom
        benchmark::DoNotOptimize(arranged(row, surface, measures));
    }
}

BENCHMARK(arrangeRow)->Arg(50)->Arg(400)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace pelistra::testing
