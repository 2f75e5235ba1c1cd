#include "ui/Font.h"

namespace pelistra::ui {

namespace {

constexpr double standardBodySize = 13;

struct StyleMetrics {
    double size;
    Weight weight;
};

constexpr StyleMetrics metricsOf(TextStyle style) {
    switch (style) {
    case TextStyle::Caption2:
        return {.size = 10, .weight = Weight::Medium};
    case TextStyle::Caption:
        return {.size = 10, .weight = Weight::Regular};
    case TextStyle::Subheadline:
        return {.size = 11, .weight = Weight::Regular};
    case TextStyle::Headline:
        return {.size = 13, .weight = Weight::Bold};
    case TextStyle::Title3:
        return {.size = 15, .weight = Weight::Regular};
    case TextStyle::Body:
        break;
    }
    return {.size = standardBodySize, .weight = Weight::Regular};
}

} // namespace

double pointSize(const Font& font, double bodySize) {
    const auto* style = std::get_if<TextStyle>(&font.size);
    const double size = style != nullptr ? metricsOf(*style).size : std::get<double>(font.size);
    return size * bodySize / standardBodySize;
}

Weight effectiveWeight(const Font& font) {
    if (font.weight) {
        return *font.weight;
    }
    const auto* style = std::get_if<TextStyle>(&font.size);
    return style != nullptr ? metricsOf(*style).weight : Weight::Regular;
}

} // namespace pelistra::ui
