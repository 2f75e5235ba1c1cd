#include "platform/linux/windows/PanelOutline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include <QPainter>

namespace pelistra::linux {

namespace {

constexpr int opaque = 255;
constexpr int half = 128;

// One of the shadow's parts: blurred by three box filters of that radius, moved down, and black of
// that opacity. In points.
struct Layer {
    double boxRadius = 0;
    double drop = 0;
    double opacity = 0;
};
constexpr Layer soft{.boxRadius = 8, .drop = 7, .opacity = 0.30};
constexpr Layer close{.boxRadius = 1.2, .drop = 1, .opacity = 0.16};
constexpr double hairlineOpacity = 0.22;
constexpr int blurPasses = 3;

std::span<std::uint8_t> rowOf(QImage& image, int y) {
    return {image.scanLine(y), static_cast<std::size_t>(image.width())};
}

std::span<const std::uint8_t> rowOf(const QImage& image, int y) {
    return {image.constScanLine(y), static_cast<std::size_t>(image.width())};
}

// The mean of each pixel's neighbourhood along the line, pixels outside counting as empty.
void blurLine(std::span<const std::uint8_t> from, std::span<std::uint8_t> to, std::size_t radius) {
    const std::size_t window = 2 * radius + 1;
    std::size_t sum = 0;
    for (std::size_t i = 0; i < std::min(radius, from.size()); ++i) {
        sum += from[i];
    }
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (i + radius < from.size()) {
            sum += from[i + radius];
        }
        to[i] = static_cast<std::uint8_t>(sum / window);
        if (i >= radius) {
            sum -= from[i - radius];
        }
    }
}

// Blurs every row and swaps rows and columns, so that a second call blurs the columns.
QImage blurredAndTransposed(const QImage& image, std::size_t radius) {
    QImage result(image.height(), image.width(), QImage::Format_Alpha8);
    const auto width = static_cast<std::size_t>(image.width());
    std::vector<std::uint8_t> line(width);
    std::vector<std::uint8_t> blurred(width);
    for (int y = 0; y < image.height(); ++y) {
        std::ranges::copy(rowOf(image, y), line.begin());
        for (int pass = 0; pass < blurPasses; ++pass) {
            blurLine(line, blurred, radius);
            line.swap(blurred);
        }
        for (int x = 0; x < image.width(); ++x) {
            rowOf(result, x)[static_cast<std::size_t>(y)] = line[static_cast<std::size_t>(x)];
        }
    }
    return result;
}

void drawLayer(QPainter& painter, const QImage& coverage, const Layer& layer, double scale) {
    const auto radius = static_cast<std::size_t>(std::lround(layer.boxRadius * scale));
    const QImage blurred = blurredAndTransposed(blurredAndTransposed(coverage, radius), radius);
    painter.setOpacity(layer.opacity);
    painter.drawImage(QPoint(0, static_cast<int>(std::lround(layer.drop * scale))), blurred);
}

// The coverage moved by a pixel in every direction makes a line around it.
void drawHairline(QPainter& painter, const QImage& coverage) {
    QImage grown(coverage.size(), QImage::Format_ARGB32_Premultiplied);
    grown.fill(Qt::transparent);
    {
        QPainter growing(&grown);
        for (const QPoint offset : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
            growing.drawImage(offset, coverage);
        }
    }
    painter.setOpacity(hairlineOpacity);
    painter.drawImage(0, 0, grown);
}

struct Run {
    int begin = 0;
    int end = 0;

    bool operator==(const Run&) const = default;
};

std::vector<Run> runsOf(std::span<const std::uint8_t> row) {
    std::vector<Run> runs;
    bool inside = false;
    for (std::size_t x = 0; x < row.size(); ++x) {
        const bool belongs = row[x] >= half;
        if (belongs && !inside) {
            runs.push_back({.begin = static_cast<int>(x), .end = 0});
        }
        if (belongs) {
            runs.back().end = static_cast<int>(x) + 1;
        }
        inside = belongs;
    }
    return runs;
}

} // namespace

QImage coverageOf(const QImage& drawn) {
    QImage coverage = drawn.convertToFormat(QImage::Format_Alpha8);
    coverage.setDevicePixelRatio(1);
    for (int y = 0; y < coverage.height(); ++y) {
        for (std::uint8_t& value : rowOf(coverage, y)) {
            value = static_cast<std::uint8_t>(std::min(2 * value, opaque));
        }
    }
    return coverage;
}

std::vector<QRect> regionOf(const QImage& coverage, int margin) {
    std::vector<QRect> region;
    std::vector<Run> above;
    for (int y = 0; y < coverage.height(); ++y) {
        const std::vector<Run> runs = runsOf(rowOf(coverage, y));
        if (!runs.empty() && runs == above) {
            for (std::size_t i = 0; i < runs.size(); ++i) {
                QRect& rect = region[region.size() - runs.size() + i];
                rect.setHeight(rect.height() + 1);
            }
        } else {
            for (const Run& run : runs) {
                region.emplace_back(run.begin, y, run.end - run.begin, 1);
            }
        }
        above = runs;
    }
    for (QRect& rect : region) {
        rect.adjust(-margin, -margin, margin, margin);
    }
    return region;
}

QImage shadowAround(const QImage& coverage, double scale) {
    QImage shadow(coverage.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    drawLayer(painter, coverage, soft, scale);
    drawLayer(painter, coverage, close, scale);
    drawHairline(painter, coverage);
    painter.setOpacity(1);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, coverage);
    painter.end();
    shadow.setDevicePixelRatio(scale);
    return shadow;
}

} // namespace pelistra::linux
