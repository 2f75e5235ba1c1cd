#include "menubar/Options.h"

#include <array>
#include <charconv>
#include <cmath>
#include <functional>

namespace pelistra::menubar {

namespace {

constexpr int wrongUsage = 2;
// More points than any screen has; keeps a mistyped number from overflowing later.
constexpr double greatestCoordinate = 32767;

// Applies an option's value; returns what is wrong with it, empty when nothing is.
using Apply = std::string (*)(Options& options, std::string_view value);

struct Switch {
    std::string_view name;
    bool takesValue;
    Apply apply;
};

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
        return "is neither auto, light nor dark";
    }
    return {};
}

std::string applyScale(Options& options, std::string_view value) {
    const std::optional<double> scale = readNumber(value);
    if (!scale || *scale < leastScale || *scale > greatestScale) {
        return "is not a number from 0.5 to 8";
    }
    options.scale = scale;
    return {};
}

std::string applyDisplay(Options& options, std::string_view value) {
    if (value.empty()) {
        return "is not the name of a display";
    }
    options.display = value;
    return {};
}

std::string applyHousing(Options& options, std::string_view value) {
    const std::size_t comma = value.find(',');
    if (comma == std::string_view::npos) {
        return "is not of the form X,WIDTH";
    }
    const std::optional<double> x = readNumber(value.substr(0, comma));
    const std::optional<double> width = readNumber(value.substr(comma + 1));
    if (!x || !width || *x < 0 || *x > greatestCoordinate || *width <= 0 ||
        *width > greatestCoordinate) {
        return "is not of the form X,WIDTH with X from 0 and WIDTH above 0, in points";
    }
    options.housing = HousingOption{.x = *x, .width = *width};
    return {};
}

std::string applyReplace(Options& options, std::string_view /*value*/) {
    options.replace = true;
    return {};
}

constexpr std::array switches{
    Switch{.name = "--theme", .takesValue = true, .apply = applyTheme},
    Switch{.name = "--scale", .takesValue = true, .apply = applyScale},
    Switch{.name = "--display", .takesValue = true, .apply = applyDisplay},
    Switch{.name = "--camera-housing", .takesValue = true, .apply = applyHousing},
    Switch{.name = "--replace", .takesValue = false, .apply = applyReplace},
};

EarlyEnd wrong(const std::string& what) {
    return {.status = wrongUsage,
            .text =
                "pelistra-menubar: " + what + "\nTry 'pelistra-menubar --help' for the options.\n"};
}

std::string quoted(std::string_view text) {
    std::string result(1, '\'');
    return result.append(text).append(1, '\'');
}

const Switch* find(std::string_view name) {
    for (const Switch& candidate : switches) {
        if (candidate.name == name) {
            return &candidate;
        }
    }
    return nullptr;
}

// Reads the option at the front of `arguments` and removes it; returns what is wrong.
std::string readOne(std::span<const std::string_view>& arguments, Options& options) {
    const std::string_view argument = arguments.front();
    arguments = arguments.subspan(1);
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const Switch* known = find(name);
    if (known == nullptr) {
        return argument.starts_with('-') ? "unknown option " + quoted(name)
                                         : "unexpected argument " + quoted(argument);
    }
    std::string_view value;
    if (equals != std::string_view::npos) {
        if (!known->takesValue) {
            return "option " + quoted(name) + " takes no value";
        }
        value = argument.substr(equals + 1);
    } else if (known->takesValue) {
        if (arguments.empty()) {
            return "option " + quoted(name) + " needs a value";
        }
        value = arguments.front();
        arguments = arguments.subspan(1);
    }
    const std::string fault = known->apply(options, value);
    return fault.empty() ? fault
                         : "the value " + quoted(value) + " of " + quoted(name) + " " + fault;
}

} // namespace

std::variant<Options, EarlyEnd> parseOptions(std::span<const std::string_view> arguments) {
    Options options;
    while (!arguments.empty()) {
        if (arguments.front() == "--help" || arguments.front() == "-h") {
            return EarlyEnd{.status = 0, .text = helpText()};
        }
        if (arguments.front() == "--version") {
            return EarlyEnd{.status = 0, .text = versionText()};
        }
        if (const std::string fault = readOne(arguments, options); !fault.empty()) {
            return wrong(fault);
        }
    }
    return options;
}

std::string helpText() {
    return "Usage: pelistra-menubar [OPTION]...\n"
           "A menu bar for X11: shows the tray icons of all programs at the top of the screen.\n"
           "\n"
           "  --theme auto|light|dark   the look; auto follows the desktop's theme (default: "
           "auto)\n"
           "  --scale N                 device pixels per point, 0.5 to 8 (default: Xft.dpi / 96)\n"
           "  --camera-housing X,WIDTH  keep icons out of a camera housing that begins X points "
           "from\n"
           "                            the left edge and is WIDTH points wide\n"
           "  --replace                 take over from the tray that is running\n"
           "  --display NAME            the X display (default: $DISPLAY)\n"
           "  -h, --help                show this text and end\n"
           "  --version                 show the version and end\n"
           "\n"
           "Hold Super (or Alt and Shift) and drag an icon to move it; Escape puts it back.\n";
}

std::string versionText() {
    return "pelistra-menubar " + std::string(versionNumber()) + "\n";
}

std::string_view versionNumber() {
    return PELISTRA_VERSION;
}

} // namespace pelistra::menubar
