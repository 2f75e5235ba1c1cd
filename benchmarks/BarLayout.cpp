// How long the bar takes to compute the places of its items. Target: 500 items in less than 5 ms.

#include "menubar/Layout.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace pelistra::menubar {
namespace {

constexpr int barWidth = 3840;

std::vector<int> mixedWidths(std::size_t count) {
    std::vector<int> widths(count);
    for (std::size_t index = 0; index < count; ++index) {
        widths[index] = 20 + static_cast<int>(index * 7 % 40);
    }
    return widths;
}

void layOutItems(benchmark::State& state) {
    const std::vector<int> widths = mixedWidths(static_cast<std::size_t>(state.range(0)));
    const std::optional<Gap> housing = Gap{.begin = 1800, .end = 2040};
    for (auto _ : state) { // NOLINT(*-identifier-naming): the library's own idiom
        benchmark::DoNotOptimize(layOut(widths, barWidth, housing));
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(layOutItems)
    ->Arg(10)
    ->Arg(100)
    ->Arg(500)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();

} // namespace
} // namespace pelistra::menubar
