#include "menubar/Options.h"

#include "platform/posix/Translation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <vector>

#include <getopt.h>

namespace pelistra::menubar {

namespace {

using posix::translated;

constexpr int wrongUsage = 2;
// More points than any screen has; keeps a mistyped number from overflowing later.
constexpr double greatestCoordinate = 32767;

// Applies an option's value; returns what is wrong with it, empty when nothing is.
using Apply = std::string (*)(Options& options, std::string_view value);

std::optional<double> readNumber(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

std::string applyTheme(Options& options, std::string_view value) {
    if (value == "auto") {
        options.theme = ThemeChoice::Auto;
    } else if (value == "light") {
        options.theme = ThemeChoice::Light;
    } else if (value == "dark") {
        options.theme = ThemeChoice::Dark;
    } else {
        return translated("is neither auto, light nor dark");
    }
    return {};
}

std::string applyScale(Options& options, std::string_view value) {
    const std::optional<double> scale = readNumber(value);
    if (!scale || *scale < leastScale || *scale > greatestScale) {
        return translated("is not a number from 0.5 to 8");
    }
    options.scale = scale;
    return {};
}

std::string applyDisplay(Options& options, std::string_view value) {
    if (value.empty()) {
        return translated("is not the name of a display");
    }
    options.display = value;
    return {};
}

std::string applyHousing(Options& options, std::string_view value) {
    const std::size_t comma = value.find(',');
    if (comma == std::string_view::npos) {
        return translated("is not of the form X,WIDTH");
    }
    const std::optional<double> x = readNumber(value.substr(0, comma));
    const std::optional<double> width = readNumber(value.substr(comma + 1));
    if (!x || !width || *x < 0 || *x > greatestCoordinate || *width <= 0 ||
        *width > greatestCoordinate) {
        return translated("is not of the form X,WIDTH with X from 0 and WIDTH above 0, in points");
    }
    options.housing = HousingOption{.x = *x, .width = *width};
    return {};
}

std::string applyReplace(Options& options, std::string_view /*value*/) {
    options.replace = true;
    return {};
}

std::string applyNoStatusNotifier(Options& options, std::string_view /*value*/) {
    options.statusNotifier = false;
    return {};
}

EarlyEnd wrong(const std::string& what) {
    return {.status = wrongUsage,
            .text = "pelistra-menubar: " + what + "\n" +
                    translated("Try 'pelistra-menubar --help' for the options.") + "\n"};
}

constexpr std::array<Apply, 6> appliers{applyTheme,   applyScale,   applyDisplay,
                                        applyHousing, applyReplace, applyNoStatusNotifier};
// What getopt_long() answers for help and version; for the others, their places in the list above.
constexpr int helpFound = 'h';
constexpr int versionFound = 'V';
constexpr std::array<option, 9> known{
    {{.name = "theme", .has_arg = required_argument, .flag = nullptr, .val = 0},
     {.name = "scale", .has_arg = required_argument, .flag = nullptr, .val = 1},
     {.name = "display", .has_arg = required_argument, .flag = nullptr, .val = 2},
     {.name = "camera-housing", .has_arg = required_argument, .flag = nullptr, .val = 3},
     {.name = "replace", .has_arg = no_argument, .flag = nullptr, .val = 4},
     {.name = "no-status-notifier", .has_arg = no_argument, .flag = nullptr, .val = 5},
     {.name = "help", .has_arg = no_argument, .flag = nullptr, .val = helpFound},
     {.name = "version", .has_arg = no_argument, .flag = nullptr, .val = versionFound},
     {}}};

// What is wrong with an argument that getopt_long() has refused.
EarlyEnd refusal(int answer, std::string_view argument) {
    const std::string_view name = argument.substr(0, argument.find('='));
    if (answer == ':') {
        return wrong(translated("option '%1' needs a value", {name}));
    }
    const bool isKnown = argument.starts_with("--") && optopt != 0;
    return wrong(isKnown ? translated("option '%1' takes no value", {name})
                         : translated("unknown option '%1'", {name}));
}

// An option's place in the list, and its value; returns what is wrong.
std::string applyOne(Options& options, std::size_t place, std::string_view value) {
    const std::string fault = appliers.at(place)(options, value);
    return fault.empty()
               ? fault
               : translated("the value '%1' of '--%2' %3", {value, known.at(place).name, fault});
}

} // namespace

std::variant<Options, EarlyEnd> parseOptions(std::span<const std::string_view> arguments) {
    std::vector<std::string> texts{"pelistra-menubar"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    std::ranges::transform(texts, std::back_inserter(pointers),
                           [](auto& text) { return text.data(); });
    const auto count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    Options options;
    optind = 0;
    int found = 0;
    while ((found = getopt_long(count, pointers.data(), "+:h", known.data(), nullptr)) != -1) {
        if (found == helpFound) {
            return EarlyEnd{.status = 0, .text = helpText()};
        }
        if (found == versionFound) {
            return EarlyEnd{.status = 0, .text = versionText()};
        }
        if (found == ':' || found == '?') {
            return refusal(found, texts.at(static_cast<std::size_t>(optind) - 1));
        }
        const std::string fault =
            applyOne(options, static_cast<std::size_t>(found), optarg != nullptr ? optarg : "");
        if (!fault.empty()) {
            return wrong(fault);
        }
    }
    if (optind < count) {
        return wrong(
            translated("unexpected argument '%1'", {texts.at(static_cast<std::size_t>(optind))}));
    }
    return options;
}

std::string helpText() {
    return translated(R"(Usage: pelistra-menubar [OPTION]...
A menu bar for X11: shows the tray icons of all programs at the top of the screen.

  --theme auto|light|dark   the look; auto follows the desktop's theme (default: auto)
  --scale N                 device pixels per point, 0.5 to 8 (default: Xft.dpi / 96)
  --camera-housing X,WIDTH  keep icons out of a camera housing that begins X points from
                            the left edge and is WIDTH points wide
  --no-status-notifier      show only icons that are windows, not those on the session bus
  --replace                 take over from the tray that is running
  --display NAME            the X display (default: $DISPLAY)
  -h, --help                show this text and end
  --version                 show the version and end

Hold Super (or Alt and Shift) and drag an icon to move it; Escape puts it back.
)");
}

std::string versionText() {
    return "pelistra-menubar " + std::string(versionNumber()) + "\n";
}

std::string_view versionNumber() {
    return PELISTRA_VERSION;
}

} // namespace pelistra::menubar
