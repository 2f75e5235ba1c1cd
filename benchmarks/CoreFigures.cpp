#include "benchmarks/CoreFigures.h"

#include <benchmark/benchmark.h>

#include <map>
#include <ranges>
#include <string>
#include <vector>

namespace pelistra::testing {

namespace {

// Keeps what Google Benchmark measures, in the order of its runs.
class Collector final : public benchmark::BenchmarkReporter {
public:
    [[nodiscard]] bool ReportContext(const Context& /*context*/) override { return true; }
    // Processor time: what else the machine does is no property of a function.
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name + "/" + run.run_name.args;
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                if (!times_.contains(name)) {
                    names_.push_back(name);
                }
                times_[name].push_back(run.GetAdjustedCPUTime());
            }
        }
    }

    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] const std::vector<double>& times(const std::string& name) const {
        return times_.at(name);
    }

private:
    std::vector<std::string> names_;
    std::map<std::string, std::vector<double>> times_;
};

struct Known {
    std::string what;
    std::string unit;
    std::optional<Limit> limit;
};

Known known(const std::string& name) {
    const std::size_t slash = name.find('/');
    const std::string count = name.substr(slash + 1);
    if (name.starts_with("layOutItems")) {
        constexpr double microseconds = 5000;
        return {.what = count + " items of the bar laid out",
                .unit = "us",
                .limit = count == "500" ? std::optional(below(microseconds)) : std::nullopt};
    }
    if (name.starts_with("arrangeRow")) {
        constexpr double microseconds = 1000;
        return {.what = "row of " + count + " items arranged",
                .unit = "us",
                .limit = count == "400" ? std::optional(below(microseconds)) : std::nullopt};
    }
    constexpr double milliseconds = 3;
    return {.what = "list of " + count + " hidden icons brought up to date",
            .unit = "ms",
            .limit = count == "10000" ? std::optional(below(milliseconds)) : std::nullopt};
}

// The factor by which the time of one icon grows from 1,000 to 10,000 icons.
Figure growth(const Collector& collector) {
    constexpr double tenTimes = 10;
    constexpr double noMoreThan = 1.5;
    const double thousand = spreadOf(collector.times("refreshWhileCollapsed/1000")).median;
    const double tenThousand = spreadOf(collector.times("refreshWhileCollapsed/10000")).median;
    const double factor = tenThousand / thousand / tenTimes;
    return {.what = "time of one of 10,000 icons, in times of one of 1,000",
            .spread = spreadOf({factor}),
            .unit = "",
            .limit = atMost(noMoreThan)};
}

} // namespace

Section coreFigures(const Effort& effort) {
    std::vector<std::string> arguments{"pelistra-figures",
                                       "--benchmark_repetitions=" + std::to_string(effort.rounds),
                                       "--benchmark_min_time=0.02"};
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    Section section{.title = "Without a display", .figures = {}};
    for (const std::string& name : collector.names()) {
        const Known about = known(name);
        section.figures.push_back({.what = about.what,
                                   .spread = spreadOf(collector.times(name)),
                                   .unit = about.unit,
                                   .limit = about.limit});
    }
    section.figures.push_back(growth(collector));
    return section;
}

} // namespace pelistra::testing
