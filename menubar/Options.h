#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace pelistra::menubar {

enum class ThemeChoice { Auto, Light, Dark };

// A camera housing at the top of the screen, in points from the bar's left edge.
struct HousingOption {
    double x = 0;
    double width = 0;

    bool operator==(const HousingOption&) const = default;
};

struct Options {
    ThemeChoice theme = ThemeChoice::Auto;
    // Device pixels per point; empty: follow the desktop's font resolution.
    std::optional<double> scale;
    // Empty: $DISPLAY.
    std::string display;
    std::optional<HousingOption> housing;
    // Take the tray over from the program that owns it.
    bool replace = false;
    // Show the icons that programs put on the session bus.
    bool statusNotifier = true;

    bool operator==(const Options&) const = default;
};

// The scales that --scale accepts.
inline constexpr double leastScale = 0.5;
inline constexpr double greatestScale = 8;

// What to print instead of starting, and the exit status to end with: 0 goes to standard output
// (help and version), 2 to standard error (a wrong command line).
struct EarlyEnd {
    int status = 0;
    std::string text;
};

// Reads the command line without the program's name. Values may follow their option or stand behind
// an equals sign; a later option replaces an earlier one.
[[nodiscard]] std::variant<Options, EarlyEnd>
parseOptions(std::span<const std::string_view> arguments);

[[nodiscard]] std::string helpText();
[[nodiscard]] std::string versionText();
// "0.1.0".
[[nodiscard]] std::string_view versionNumber();

} // namespace pelistra::menubar
