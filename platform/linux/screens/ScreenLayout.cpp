#include "platform/linux/screens/ScreenLayout.h"

#include "platform/x11/Resources.h"

#include <algorithm>
#include <iterator>

namespace pelistra::linux {

namespace {

bool hasArea(const RootRect& rect) {
    return rect.width > 0 && rect.height > 0;
}

RootRect intersection(const RootRect& a, const RootRect& b) {
    const int left = std::max(a.x, b.x);
    const int top = std::max(a.y, b.y);
    return {.x = left,
            .y = top,
            .width = std::max(0, std::min(a.right(), b.right()) - left),
            .height = std::max(0, std::min(a.bottom(), b.bottom()) - top)};
}

// Indices of _NET_WM_STRUT_PARTIAL: four depths, then start and end along each edge.
enum : std::uint8_t { Left, Right, Top, Bottom, FirstSpan };

int clamped(std::uint32_t value) {
    constexpr std::uint32_t largestCoordinate = 65535;
    return static_cast<int>(std::min(value, largestCoordinate));
}

bool spanMeets(const Strut& strut, int edge, int start, int end) {
    const int spanStart = clamped(strut[FirstSpan + 2 * edge]);
    const int spanEnd = clamped(strut[FirstSpan + 2 * edge + 1]);
    return spanStart < end && spanEnd >= start;
}

// What a strut leaves of a monitor. A strut that would leave nothing is not meant for it.
RootRect without(const Strut& strut, const RootRect& root, const RootRect& frame) {
    int left = frame.x;
    int right = frame.right();
    int top = frame.y;
    int bottom = frame.bottom();
    if (spanMeets(strut, Left, frame.y, frame.bottom())) {
        left = std::max(left, root.x + clamped(strut[Left]));
    }
    if (spanMeets(strut, Right, frame.y, frame.bottom())) {
        right = std::min(right, root.right() - clamped(strut[Right]));
    }
    if (spanMeets(strut, Top, frame.x, frame.right())) {
        top = std::max(top, root.y + clamped(strut[Top]));
    }
    if (spanMeets(strut, Bottom, frame.x, frame.right())) {
        bottom = std::min(bottom, root.bottom() - clamped(strut[Bottom]));
    }
    const RootRect rest{.x = left, .y = top, .width = right - left, .height = bottom - top};
    return hasArea(rest) ? rest : frame;
}

std::vector<Monitor> primaryFirst(const ScreenFacts& facts) {
    std::vector<Monitor> monitors;
    for (const bool primary : {true, false}) {
        std::ranges::copy_if(facts.monitors, std::back_inserter(monitors),
                             [primary](const Monitor& monitor) {
                                 return monitor.isPrimary == primary && hasArea(monitor.frame);
                             });
    }
    return monitors;
}

RootRect visiblePart(const ScreenFacts& facts, const RootRect& frame, bool isOnly) {
    RootRect rest = facts.barStrut ? without(*facts.barStrut, facts.root, frame) : frame;
    if (isOnly && facts.workArea) {
        if (const auto common = intersection(rest, *facts.workArea); hasArea(common)) {
            rest = common;
        }
    }
    return rest;
}

bool holds(const RootRect& frame, const RootRect& part) {
    return hasArea(part) && intersection(frame, part) == part;
}

} // namespace

Coordinates coordinatesFrom(const ScreenFacts& facts) {
    const auto monitors = primaryFirst(facts);
    return {facts.scale, monitors.empty() ? facts.root : monitors.front().frame};
}

std::vector<Screen> screensFrom(const ScreenFacts& facts) {
    const auto monitors = primaryFirst(facts);
    const auto coordinates = coordinatesFrom(facts);
    std::vector<Screen> screens;
    for (const auto& [frame, isPrimary] : monitors) {
        Screen screen{.frame = coordinates.toScreen(frame),
                      .visibleFrame =
                          coordinates.toScreen(visiblePart(facts, frame, monitors.size() == 1)),
                      .auxiliaryTopLeftArea = std::nullopt,
                      .auxiliaryTopRightArea = std::nullopt};
        if (facts.auxiliaryAreas && holds(frame, facts.auxiliaryAreas->front()) &&
            holds(frame, facts.auxiliaryAreas->back())) {
            screen.auxiliaryTopLeftArea = coordinates.toScreen(facts.auxiliaryAreas->front());
            screen.auxiliaryTopRightArea = coordinates.toScreen(facts.auxiliaryAreas->back());
        }
        screens.push_back(screen);
    }
    return screens;
}

std::optional<double> resourceScaleIn(std::string_view resources) {
    constexpr double least = 24;
    constexpr double most = 960;
    const auto resolution = x11::textResolutionIn(resources);
    if (!resolution || *resolution < least || *resolution > most) {
        return std::nullopt;
    }
    return *resolution / x11::unscaledResolution;
}

std::optional<RootRect> rootRectIn(std::span<const std::uint32_t> words) {
    constexpr std::size_t rectWords = 4;
    // Far more than the 16 bits of a coordinate, and far less than what overflows when added up.
    constexpr std::int32_t mostOfCoordinate = 1 << 20;
    const auto isPlace = [](std::uint32_t word) {
        const auto value = static_cast<std::int32_t>(word);
        return value >= -mostOfCoordinate && value <= mostOfCoordinate;
    };
    if (words.size() != rectWords || !std::ranges::all_of(words, isPlace)) {
        return std::nullopt;
    }
    return RootRect{.x = static_cast<std::int32_t>(words[0]),
                    .y = static_cast<std::int32_t>(words[1]),
                    .width = static_cast<std::int32_t>(words[2]),
                    .height = static_cast<std::int32_t>(words[3])};
}

std::optional<double> scaleIn(std::span<const std::uint32_t> words) {
    constexpr std::uint32_t least = 50;
    constexpr std::uint32_t most = 800;
    constexpr double hundredths = 100;
    if (words.size() != 1 || words.front() < least || words.front() > most) {
        return std::nullopt;
    }
    return words.front() / hundredths;
}

} // namespace pelistra::linux
