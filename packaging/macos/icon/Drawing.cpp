#include "packaging/macos/icon/Drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pelistra::icon {

namespace {

// The drawing is 1024 units wide, with the margin that icons of the system have.
constexpr double wholeUnits = 1024;
constexpr double bodyHalf = 412;
constexpr double bodyExponent = 5;

// Straight, not premultiplied.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
};

constexpr Color rgb(int red, int green, int blue, double alpha = 1) {
    return {.red = red / 255.0, .green = green / 255.0, .blue = blue / 255.0, .alpha = alpha};
}

Color mix(const Color& from, const Color& to, double share) {
    const auto between = [share](double a, double b) { return a + (b - a) * share; };
    return {.red = between(from.red, to.red),
            .green = between(from.green, to.green),
            .blue = between(from.blue, to.blue),
            .alpha = between(from.alpha, to.alpha)};
}

Color over(const Color& above, const Color& below) {
    const double alpha = above.alpha + below.alpha * (1 - above.alpha);
    if (alpha <= 0) {
        return {};
    }
    const auto blend = [&](double a, double b) {
        return (a * above.alpha + b * below.alpha * (1 - above.alpha)) / alpha;
    };
    return {.red = blend(above.red, below.red),
            .green = blend(above.green, below.green),
            .blue = blend(above.blue, below.blue),
            .alpha = alpha};
}

struct Point {
    double x = 0;
    double y = 0;
};

// How far outside the rounded rectangle the point lies; negative inside.
double roundedDistance(const Point& point, const Point& centre, double halfWidth, double halfHeight,
                       double radius) {
    const double x = std::abs(point.x - centre.x) - (halfWidth - radius);
    const double y = std::abs(point.y - centre.y) - (halfHeight - radius);
    return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) - radius;
}

// The body's outline has continuous corners.
bool isInBody(const Point& point, double grownBy = 0) {
    const double half = bodyHalf + grownBy;
    const double x = std::abs(point.x - wholeUnits / 2) / half;
    const double y = std::abs(point.y - wholeUnits / 2) / half;
    return std::pow(x, bodyExponent) + std::pow(y, bodyExponent) <= 1;
}

Color shadow(const Point& point) {
    constexpr double depth = 22;
    constexpr double steps = 6;
    double share = 0;
    for (double step = 1; step <= steps; ++step) {
        share +=
            isInBody({.x = point.x, .y = point.y - 10}, depth * (1 - 2 * step / steps)) ? 1 : 0;
    }
    return rgb(20, 16, 60, 0.30 * share / steps);
}

Color body(const Point& point) {
    const double share = std::clamp((point.x + point.y) / (2 * wholeUnits), 0.0, 1.0);
    const Color fill = mix(rgb(0x5C, 0x9B, 0xFF), rgb(0x7A, 0x4F, 0xE8), share);
    // A little light from above.
    const double light = std::clamp(1 - (point.y - 100) / 500, 0.0, 1.0) * 0.16;
    return over(rgb(255, 255, 255, light), fill);
}

bool isInDot(const Point& point, double x, double y, double radius) {
    return std::hypot(point.x - x, point.y - y) <= radius;
}

// The bar, 620 units wide: hidden dots, the divider, visible dots.
Color bar(const Point& point, bool hasDots) {
    constexpr Point centre = {.x = 512, .y = 400};
    if (roundedDistance(point, centre, 310, 92, 60) > 0) {
        return {};
    }
    Color color = rgb(255, 255, 255, 0.97);
    const double halfLine = hasDots ? 13 : 36;
    if (roundedDistance(point, centre, halfLine, 62, 13) <= 0) {
        return rgb(0x4A, 0x35, 0xB8);
    }
    if (!hasDots) {
        return color;
    }
    for (const double x : {292.0, 402.0}) {
        if (isInDot(point, x, centre.y, 34)) {
            color = over(rgb(0x4A, 0x35, 0xB8, 0.30), color);
        }
    }
    for (const double x : {622.0, 732.0}) {
        if (isInDot(point, x, centre.y, 34)) {
            color = over(rgb(0x4A, 0x35, 0xB8), color);
        }
    }
    return color;
}

// The second row below it shows what is hidden.
Color row(const Point& point, bool hasDots) {
    constexpr Point centre = {.x = 512, .y = 640};
    if (roundedDistance(point, centre, 222, 84, 56) > 0) {
        return {};
    }
    Color color = rgb(255, 255, 255, 0.34);
    if (!hasDots) {
        return color;
    }
    for (const double x : {402.0, 512.0, 622.0}) {
        if (isInDot(point, x, centre.y, 34)) {
            color = over(rgb(255, 255, 255, 0.95), color);
        }
    }
    return color;
}

constexpr int leastSideWithDots = 24;

Color colorAt(const Point& point, int side) {
    const bool hasDots = side >= leastSideWithDots;
    if (!isInBody(point)) {
        return shadow(point);
    }
    return over(bar(point, hasDots), over(row(point, hasDots), body(point)));
}

// Along each side of a pixel; large sizes need fewer.
int samplesFor(int side) {
    return side >= 512 ? 3 : 4;
}

Color pixelColor(int x, int y, int side) {
    const double unit = wholeUnits / side;
    const int samples = samplesFor(side);
    Color sum;
    for (int i = 0; i < samples * samples; ++i) {
        const double dx = (i % samples + 0.5) / samples;
        const double dy = (i / samples + 0.5) / samples;
        const Color sample = colorAt({.x = (x + dx) * unit, .y = (y + dy) * unit}, side);
        sum.red += sample.red * sample.alpha;
        sum.green += sample.green * sample.alpha;
        sum.blue += sample.blue * sample.alpha;
        sum.alpha += sample.alpha;
    }
    if (sum.alpha <= 0) {
        return {};
    }
    return {.red = sum.red / sum.alpha,
            .green = sum.green / sum.alpha,
            .blue = sum.blue / sum.alpha,
            .alpha = sum.alpha / (samples * samples)};
}

std::uint8_t byte(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

} // namespace

Picture drawIcon(int side) {
    Picture picture{.side = side, .pixels = {}};
    picture.pixels.reserve(static_cast<std::size_t>(side) * side * 4);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const Color color = pixelColor(x, y, side);
            for (const double channel : {color.red, color.green, color.blue, color.alpha}) {
                picture.pixels.push_back(byte(channel));
            }
        }
    }
    return picture;
}

} // namespace pelistra::icon
