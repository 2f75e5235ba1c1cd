#pragma once

#include <string_view>

namespace pelistra::menubar {

// Device pixels and points: one scale for the whole X screen.
class Metrics {
public:
    Metrics() = default;
    explicit Metrics(double scale);

    // Device pixels per point x 100.
    [[nodiscard]] int scaleHundredths() const { return hundredths_; }
    // The nearest whole number of device pixels.
    [[nodiscard]] int pixels(double points) const;
    // The height of the bar, and of a square slot in it, in device pixels.
    [[nodiscard]] int barHeight() const { return pixels(barHeightInPoints); }

    bool operator==(const Metrics&) const = default;

private:
    static constexpr double barHeightInPoints = 28;
    static constexpr int wholeScale = 100;

    int hundredths_ = wholeScale;
};

// The scale that the desktop's resource database asks for: the entry Xft.dpi over 96, kept within
// the scales that the bar can show; 1 when there is no such entry or it is no number.
[[nodiscard]] double scaleFromResources(std::string_view resourceDatabase);

} // namespace pelistra::menubar
