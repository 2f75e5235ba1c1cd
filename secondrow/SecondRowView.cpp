#include "secondrow/SecondRowView.h"

#include "overflow/OverflowStore.h"
#include "secondrow/SecondRowRightClickCapture.h"
#include "ui/Nodes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace pelistra {

using namespace ui;

namespace {

constexpr RoundedRectangle card = {.cornerRadius = 16, .continuous = true};

View messageLine(const std::string& message) {
    return View(Text{.text = message,
                     .font = {.size = TextStyle::Caption2},
                     .foreground = Color{.base = Role::Secondary},
                     .lineLimit = 1})
        .padding({.top = 0, .leading = 12, .bottom = 5, .trailing = 12});
}

View symbolButton(const char* symbol, const char* help, Action action) {
    return View(Button{.label = Symbol{.name = symbol},
                       .action = std::move(action),
                       .style = ButtonStyle::Borderless})
        .help(help);
}

} // namespace

SecondRowView::SecondRowView(std::shared_ptr<OverflowStore> store, ItemAction onActivate,
                             ItemAction onOriginalMenu, std::function<void()> onArrange)
    : store_(std::move(store)), onActivate_(std::move(onActivate)),
      onOriginalMenu_(std::move(onOriginalMenu)), onArrange_(std::move(onArrange)) {}

std::vector<SubscriptionPtr> SecondRowView::observeState(const std::function<void()>& changed) {
    std::vector<SubscriptionPtr> tokens;
    tokens.push_back(observeChanges(store_->items, changed));
    tokens.push_back(observeChanges(store_->message, changed));
    tokens.push_back(observeChanges(store_->hasScreenCapturePermission, changed));
    return tokens;
}

View SecondRowView::body() {
    std::vector<View> lines = {itemRow().id("row")};
    if (const auto& message = store_->message.get()) {
        lines.push_back(messageLine(*message).id("message"));
    }
    return View(VStack{.spacing = 0, .children = std::move(lines)})
        .frame({.maxWidth = infinity, .maxHeight = infinity})
        .background(FilledShape{.outline = card, .fill = Material::UltraThin})
        .overlay(StrokedShape{
            .outline = card, .color = {.base = Role::White, .opacity = 0.18}, .lineWidth = 0.5})
        .padding(Edges::all(4));
}

View SecondRowView::itemRow() const {
    std::vector<View> parts = {View(HorizontalScroll{.content = itemStrip()}).id("items"),
                               View(Divider()).frame({.height = 30}).id("divider")};
    if (!store_->hasScreenCapturePermission.get()) {
        parts.push_back(permissionButton().id("permission"));
    }
    parts.push_back(arrangeButton().id("arrange"));
    return HStack{.spacing = 7, .children = std::move(parts)};
}

View SecondRowView::itemStrip() const {
    const auto& items = store_->items.get();
    std::vector<View> cells;
    cells.reserve(items.size() + 1);
    if (items.empty()) {
        cells.push_back(emptyText().id("empty"));
    }
    for (const auto& item : items) {
        cells.push_back(cell(item).id(std::uint64_t{item.id}));
    }
    return View(HStack{.spacing = 3, .children = std::move(cells)}).padding({.leading = 9});
}

View SecondRowView::emptyText() const {
    return View(Text{.text = store_->hasSymbols() ? "隐藏区为空" : "当前系统不支持",
                     .font = {.size = TextStyle::Subheadline},
                     .foreground = Color{.base = Role::Secondary}})
        .padding(Edges::horizontal(10));
}

View SecondRowView::cell(const OverflowItem& item) const {
    const RoundedRectangle hitArea = {.cornerRadius = 8, .continuous = true};
    const View label = overflowIcon(item)
                           .frame({.width = 32, .height = 28})
                           .padding(Edges::all(4))
                           .contentShape(hitArea);
    const Action activate = [onActivate = onActivate_, item] { onActivate(item); };
    const Action originalMenu = [onOriginalMenu = onOriginalMenu_, item] { onOriginalMenu(item); };
    const std::string tooltip = item.tooltip();
    return View(Button{.label = label, .action = activate, .style = ButtonStyle::Plain})
        .overlay(Represented{std::make_shared<SecondRowRightClickCapture>(originalMenu)})
        .help(tooltip + "\n左键：打开应用；右键：打开原托盘菜单")
        .accessibilityLabel(tooltip + "，点击打开应用");
}

View SecondRowView::overflowIcon(const OverflowItem& item) {
    if (item.capturedImage) {
        return Picture{item.capturedImage};
    }
    if (item.applicationIcon) {
        return Picture{item.applicationIcon};
    }
    return Symbol{.name = item.fallbackSymbol(),
                  .font = {.size = 18.0, .weight = Weight::Medium},
                  .foreground = Color{.base = Role::Primary}};
}

View SecondRowView::permissionButton() const {
    return symbolButton("camera.badge.ellipsis", "允许屏幕录制，以显示菜单栏原图标",
                        [store = std::weak_ptr<OverflowStore>(store_)] {
                            if (const auto living = store.lock()) {
                                living->requestScreenCapturePermission();
                            }
                        });
}

View SecondRowView::arrangeButton() const {
    return symbolButton("slider.horizontal.3", "展开原菜单栏图标并重新整理", onArrange_)
        .padding({.trailing = 10});
}

} // namespace pelistra
