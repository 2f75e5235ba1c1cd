#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What a number of measurements have in common: the median, and the quartiles around it.
struct Spread {
    double lower = 0;
    double median = 0;
    double upper = 0;
    std::size_t count = 0;
};

// Throws std::out_of_range without any value.
[[nodiscard]] Spread spreadOf(std::vector<double> values);

// What is aimed at.
struct Limit {
    enum class Side { AtMost, Below, AtLeast };

    Side side = Side::AtMost;
    double value = 0;

    [[nodiscard]] bool allows(double measured) const;
};

[[nodiscard]] inline Limit atMost(double value) {
    return {.side = Limit::Side::AtMost, .value = value};
}
[[nodiscard]] inline Limit below(double value) {
    return {.side = Limit::Side::Below, .value = value};
}
[[nodiscard]] inline Limit atLeast(double value) {
    return {.side = Limit::Side::AtLeast, .value = value};
}

struct Figure {
    std::string what;
    Spread spread;
    std::string unit;
    // Empty where the number only explains another one.
    std::optional<Limit> limit = {};

    // The median is what counts.
    [[nodiscard]] bool isMissed() const { return limit && !limit->allows(spread.median); }
};

// Figures that belong together.
struct Section {
    std::string title;
    std::vector<Figure> figures;
};

// One quantity of several products. The first of them is ours.
struct ComparedRow {
    std::string what;
    std::string unit;
    // Empty where a product does not have what is measured.
    std::vector<std::optional<Spread>> values;
};

struct Comparison {
    std::string title;
    std::vector<std::string> products;
    std::vector<ComparedRow> rows;
};

// A number with as many decimals as are worth reading.
[[nodiscard]] std::string numberText(double value);

// For a terminal.
[[nodiscard]] std::string plainText(const Section& section);
[[nodiscard]] std::string plainText(const Comparison& comparison);
// For a page of documentation.
[[nodiscard]] std::string markdown(const Section& section);
[[nodiscard]] std::string markdown(const Comparison& comparison);

} // namespace pelistra::testing
