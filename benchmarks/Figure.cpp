#include "benchmarks/Figure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace pelistra::testing {

namespace {

constexpr int whatWidth = 72;
constexpr int limitWidth = 14;
constexpr int valueWidth = 12;
constexpr int quartilesWidth = 20;
constexpr int productWidth = 30;

std::string text(const Limit& limit, const std::string& unit) {
    constexpr std::array signs{"<= ", "< ", ">= "};
    return signs.at(static_cast<std::size_t>(limit.side)) + numberText(limit.value) +
           (unit.empty() ? "" : " " + unit);
}

std::string quartiles(const Spread& spread) {
    if (spread.count < 2) {
        return "";
    }
    return numberText(spread.lower) + " to " + numberText(spread.upper);
}

std::string verdict(const Figure& figure) {
    if (!figure.limit) {
        return "";
    }
    return figure.isMissed() ? "missed" : "ok";
}

std::string withUnit(double value, const std::string& unit) {
    return numberText(value) + (unit.empty() ? "" : " " + unit);
}

// How many times ours it is.
std::string ratio(const ComparedRow& row, std::size_t product) {
    const auto& ours = row.values.front();
    const auto& other = row.values.at(product);
    if (product == 0 || !ours || !other) {
        return "";
    }
    if (ours->median == 0) {
        return other->median == 0 ? " (same)" : " (ours 0)";
    }
    return " (x" + numberText(other->median / ours->median) + ")";
}

std::string cell(const ComparedRow& row, std::size_t product) {
    const auto& value = row.values.at(product);
    return value ? numberText(value->median) + ratio(row, product) : "-";
}

std::string range(const ComparedRow& row, std::size_t product) {
    const auto& value = row.values.at(product);
    const std::string between = value ? quartiles(*value) : "";
    return between.empty() ? "" : "<br><small>" + between + "</small>";
}

std::string heading(const ComparedRow& row) {
    return row.what + (row.unit.empty() ? "" : ", " + row.unit);
}

} // namespace

Spread spreadOf(std::vector<double> values) {
    std::ranges::sort(values);
    constexpr std::size_t quarters = 4;
    return {.lower = values.at(values.size() / quarters),
            .median = values.at(values.size() / 2),
            .upper = values.at(values.size() * 3 / quarters),
            .count = values.size()};
}

bool Limit::allows(double measured) const {
    switch (side) {
    case Side::AtMost:
        return measured <= value;
    case Side::Below:
        return measured < value;
    case Side::AtLeast:
        return measured >= value;
    }
    return false;
}

std::string numberText(double value) {
    constexpr double large = 100;
    constexpr double middling = 10;
    constexpr double small = 0.1;
    const double size = std::abs(value);
    int decimals = 2;
    if (size >= large || value == std::round(value)) {
        decimals = 0;
    } else if (size >= middling) {
        decimals = 1;
    } else if (size < small) {
        decimals = 4;
    }
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(decimals) << value;
    return stream.str();
}

std::string plainText(const Section& section) {
    std::ostringstream out;
    out << "\n" << section.title << "\n" << std::left;
    for (const Figure& figure : section.figures) {
        out << "  " << std::setw(whatWidth) << figure.what << std::setw(limitWidth)
            << (figure.limit ? text(*figure.limit, figure.unit) : "") << std::setw(valueWidth)
            << withUnit(figure.spread.median, figure.unit) << std::setw(quartilesWidth)
            << quartiles(figure.spread) << verdict(figure) << "\n";
    }
    return out.str();
}

std::string plainText(const Comparison& comparison) {
    std::ostringstream out;
    out << "\n" << comparison.title << "\n";
    for (const ComparedRow& row : comparison.rows) {
        out << "  " << heading(row) << "\n" << std::left;
        for (std::size_t product = 0; product < comparison.products.size(); ++product) {
            const auto& value = row.values.at(product);
            out << "    " << std::setw(productWidth) << comparison.products.at(product)
                << std::setw(quartilesWidth) << cell(row, product)
                << (value ? quartiles(*value) : "") << "\n";
        }
    }
    return out.str();
}

std::string markdown(const Section& section) {
    std::ostringstream out;
    out << "## " << section.title << "\n\n| what | limit | median | quartiles | |\n"
        << "|---|---|---|---|---|\n";
    for (const Figure& figure : section.figures) {
        out << "| " << figure.what << " | "
            << (figure.limit ? text(*figure.limit, figure.unit) : "") << " | "
            << withUnit(figure.spread.median, figure.unit) << " | " << quartiles(figure.spread)
            << " | " << verdict(figure) << " |\n";
    }
    out << "\n";
    return out.str();
}

std::string markdown(const Comparison& comparison) {
    std::ostringstream out;
    out << "## " << comparison.title << "\n\n|  |";
    for (const std::string& product : comparison.products) {
        out << " " << product << " |";
    }
    out << "\n|---|";
    for (std::size_t product = 0; product < comparison.products.size(); ++product) {
        out << "---|";
    }
    out << "\n";
    for (const ComparedRow& row : comparison.rows) {
        out << "| " << heading(row) << " |";
        for (std::size_t product = 0; product < comparison.products.size(); ++product) {
            out << " " << cell(row, product) << range(row, product) << " |";
        }
        out << "\n";
    }
    out << "\n";
    return out.str();
}

} // namespace pelistra::testing
