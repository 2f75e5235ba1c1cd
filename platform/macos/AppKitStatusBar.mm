#include "platform/macos/AppKitStatusBar.h"

#include "platform/macos/ActionTarget.h"
#include "platform/macos/AppKitImages.h"
#include "platform/macos/Conversions.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace pelistra::macos {

namespace {

class AppKitStatusButton final : public StatusButton {
  public:
    explicit AppKitStatusButton(NSStatusBarButton* button)
        : button_(Owned<NSStatusBarButton*>::share(button)),
          target_(Owned<PelistraActionTarget*>::adopt([[PelistraActionTarget alloc] init])) {}
    AppKitStatusButton(const AppKitStatusButton&) = delete;
    AppKitStatusButton& operator=(const AppKitStatusButton&) = delete;
    ~AppKitStatusButton() override {
        // Controls do not own their target.
        [button_.get() setTarget:nil];
        [button_.get() setAction:nullptr];
    }

    void setImage(ImagePtr image) override { [button_.get() setImage:nativeImage(image)]; }

    void setToolTip(std::string_view text) override { [button_.get() setToolTip:nsString(text)]; }

    void setAction(std::function<void()> action) override {
        const bool inert = !action;
        target_.get()->action = std::move(action);
        [button_.get() setTarget:(inert ? nil : target_.get())];
        [button_.get() setAction:(inert ? nullptr : @selector(perform:))];
        // A button that does nothing does not answer a press either.
        if (inert) {
            [static_cast<NSButtonCell*>([button_.get() cell]) setHighlightsBy:NSNoCellMask];
        }
    }

    void sendActionOn(EventMask mask) override {
        [button_.get() sendActionOn:static_cast<NSEventMask>(mask)];
    }

    [[nodiscard]] std::optional<ScreenRect> windowFrame() const override {
        NSWindow* window = [button_.get() window];
        return window != nil ? std::optional(screenRect([window frame])) : std::nullopt;
    }

    [[nodiscard]] std::optional<ScreenRect> frameOnScreen() const override {
        NSWindow* window = [button_.get() window];
        if (window == nil) {
            return std::nullopt;
        }
        const NSRect inWindow = [button_.get() convertRect:[button_.get() bounds] toView:nil];
        return screenRect([window convertRectToScreen:inWindow]);
    }

  private:
    Owned<NSStatusBarButton*> button_;
    Owned<PelistraActionTarget*> target_;
};

class AppKitStatusItem final : public StatusItem {
  public:
    AppKitStatusItem(NSStatusItem* item, std::shared_ptr<std::vector<Owned<NSStatusItem*>>> items)
        : item_(Owned<NSStatusItem*>::share(item)), items_(std::move(items)) {
        items_->push_back(item_);
        if (NSStatusBarButton* button = [item button]) {
            button_ = std::make_shared<AppKitStatusButton>(button);
        }
    }
    AppKitStatusItem(const AppKitStatusItem&) = delete;
    AppKitStatusItem& operator=(const AppKitStatusItem&) = delete;
    ~AppKitStatusItem() override {
        button_.reset();
        std::erase_if(*items_, [this](const auto& item) { return item.get() == item_.get(); });
        [[NSStatusBar systemStatusBar] removeStatusItem:item_.get()];
    }

    void setAutosaveName(std::string_view name) override {
        [item_.get() setAutosaveName:nsString(name)];
    }
    void setVisible(bool visible) override { [item_.get() setVisible:(visible ? YES : NO)]; }
    void setLength(double length) override { [item_.get() setLength:length]; }
    [[nodiscard]] double length() const override { return [item_.get() length]; }
    [[nodiscard]] std::shared_ptr<StatusButton> button() const override { return button_; }

  private:
    Owned<NSStatusItem*> item_;
    std::shared_ptr<std::vector<Owned<NSStatusItem*>>> items_;
    std::shared_ptr<AppKitStatusButton> button_;
};

// In the window server's coordinates, whose y grows downwards from the top of the first screen.
WindowBounds boundsOf(NSRect frame) {
    const double top = NSMaxY([[[NSScreen screens] firstObject] frame]);
    return {.x = frame.origin.x,
            .y = top - NSMaxY(frame),
            .width = frame.size.width,
            .height = frame.size.height};
}

WindowInfo describe(NSStatusItem* item, NSWindow* window) {
    return {.number = static_cast<WindowId>([window windowNumber]),
            .ownerPid = ::getpid(),
            .ownerName = utf8([[NSProcessInfo processInfo] processName]),
            .name = utf8([item autosaveName]),
            .layer = statusWindowLayer,
            .bounds = boundsOf([window frame])};
}

} // namespace

std::unique_ptr<StatusItem> AppKitStatusBar::statusItem(double withLength) {
    return std::make_unique<AppKitStatusItem>(
        [[NSStatusBar systemStatusBar] statusItemWithLength:withLength], items_);
}

std::vector<WindowInfo> AppKitStatusBar::ownWindows() const {
    std::vector<WindowInfo> windows;
    for (const auto& item : *items_) {
        NSWindow* window = [[item.get() button] window];
        if (window != nil && [item.get() isVisible]) {
            windows.push_back(describe(item.get(), window));
        }
    }
    return windows;
}

NSAppearance* AppKitStatusBar::appearance() const {
    return items_->empty() ? nil : [[items_->front().get() button] effectiveAppearance];
}

} // namespace pelistra::macos
