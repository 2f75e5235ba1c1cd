#include "statusbar/StatusImages.h"

#include <memory>
#include <string_view>

namespace pelistra {
namespace {

constexpr Size dividerImageSize{.width = 12, .height = 18};
constexpr double barWidth = 2;
constexpr double barRadius = 1;
constexpr double barMargin = 1;

bool drawDivider(Canvas& canvas, const Canvas::DrawRect& destination) {
    canvas.setFillColor(ColorRole::Label);
    canvas.fillRoundedRect(makeRect<ScreenSpace>(destination.midX() - barWidth / 2, barMargin,
                                                 barWidth, destination.height() - 2 * barMargin),
                           barRadius, barRadius);
    return true;
}

ImagePtr templateSymbol(Images& images, std::string_view name, std::string_view description) {
    const auto image = images.systemSymbol(name, description);
    if (image != nullptr) {
        image->isTemplate = true;
    }
    return image;
}

} // namespace

ImagePtr dividerImage(Images& images) {
    const auto image = images.drawn(dividerImageSize, drawDivider);
    image->isTemplate = true;
    image->accessibilityDescription = "Pelistra 隐藏区分隔线";
    return image;
}

ImagePtr expandedArrowImage(Images& images) {
    return templateSymbol(images, "chevron.right", "隐藏左侧图标");
}

ImagePtr overflowArrowImage(Images& images, bool panelVisible) {
    return panelVisible ? templateSymbol(images, "chevron.up", "关闭第二行溢出栏")
                        : templateSymbol(images, "chevron.down", "打开第二行溢出栏");
}

} // namespace pelistra
