#include "platform/macos/views/AppKitMeasures.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/LabelField.h"
#include "platform/macos/views/NativeButton.h"
#include "platform/macos/views/Style.h"

namespace pelistra::macos {

namespace {

constexpr double switchDistance = 12;
constexpr Size usualSwitch = {.width = 38, .height = 22};

// Of a scroll view that only says what its scroller takes.
constexpr NSRect scrollFrame = {{0, 0}, {100, 100}};

} // namespace

AppKitMeasures::AppKitMeasures()
    : field_(makeLabel()),
      switch_(Owned<NSSwitch*>::adopt([[NSSwitch alloc] initWithFrame:NSZeroRect])),
      scroll_(Owned<NSScrollView*>::adopt([[NSScrollView alloc] initWithFrame:scrollFrame])) {
    [scroll_.get() setBorderType:NSNoBorder];
    [scroll_.get() setHasVerticalScroller:YES];
}

Size AppKitMeasures::text(const ui::Text& text, std::optional<double> width) const {
    auto* field = static_cast<NSTextField*>(field_.get());
    showText(field, text);
    return measureLabel(field, width);
}

Size AppKitMeasures::symbol(const ui::Symbol& symbol) const {
    NSImage* image = nativeSymbol(symbol.name, symbol.font);
    return image != nil ? sizeOf([image size]) : Size{};
}

std::optional<Size> AppKitMeasures::nativeButton(const ui::Button& button) const {
    if (!isNative(button)) {
        return std::nullopt;
    }
    const auto native = makeButton([PelistraPushButton class]);
    showButton(native.get(), button);
    const NSSize size = [[native.get() cell] cellSize];
    return sizeOf(
        [native.get() alignmentRectForFrame:NSMakeRect(0, 0, size.width, size.height)].size);
}

ui::ButtonMetrics AppKitMeasures::button(const ui::Button& button) const {
    return {.insets = ui::Edges::all(button.style == ui::ButtonStyle::Borderless ? 5 : 0)};
}

ui::SwitchMetrics AppKitMeasures::toggle() const {
    const NSSize size = [switch_.get() intrinsicContentSize];
    return {.size = size.width > 0 && size.height > 0 ? sizeOf(size) : usualSwitch,
            .distance = switchDistance};
}

ui::FormMetrics AppKitMeasures::form() const {
    return {
        .margins = ui::Edges::all(20),
        .widestCard = ui::infinity,
        .titleFont = {.size = ui::TextStyle::Headline},
        .titleDistance = 8,
        .sectionDistance = 24,
        .rowInsets = {.top = 8, .leading = formRowMargin, .bottom = 8, .trailing = formRowMargin},
        .scrollerWidth = scrollFrame.size.width - [scroll_.get() contentSize].width};
}

} // namespace pelistra::macos
