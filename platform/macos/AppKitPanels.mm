#include "platform/macos/AppKitPanels.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/Owned.h"
#include "platform/macos/views/ContentButton.h"
#include "platform/macos/views/HostingView.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace pelistra::macos {

namespace {

static_assert(window_style::nonactivatingPanel == NSWindowStyleMaskNonactivatingPanel);
static_assert(collection_behavior::canJoinAllSpaces == NSWindowCollectionBehaviorCanJoinAllSpaces);
static_assert(collection_behavior::transient == NSWindowCollectionBehaviorTransient);
static_assert(collection_behavior::ignoresCycle == NSWindowCollectionBehaviorIgnoresCycle);
static_assert(collection_behavior::fullScreenAuxiliary ==
              NSWindowCollectionBehaviorFullScreenAuxiliary);
static_assert(static_cast<NSInteger>(AnimationBehavior::UtilityWindow) ==
              NSWindowAnimationBehaviorUtilityWindow);

NSColor* colorOf(PanelBackground background) {
    return background == PanelBackground::Clear ? [NSColor clearColor]
                                                : [NSColor windowBackgroundColor];
}

class AppKitPanel final : public Panel {
  public:
    AppKitPanel(Size contentSize, std::uint32_t styleMask, const HostingServices& services,
                AppKitPanels::Appearance appearance)
        : services_(services), appearance_(std::move(appearance)),
          panel_(Owned<NSPanel*>::adopt([[NSPanel alloc]
              initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                        styleMask:static_cast<NSWindowStyleMask>(styleMask)
                          backing:NSBackingStoreBuffered
                            defer:NO])) {
        // The application is never the active one while its panel is used.
        [panel_.get() setAllowsToolTipsWhenApplicationIsInactive:YES];
    }
    AppKitPanel(const AppKitPanel&) = delete;
    AppKitPanel& operator=(const AppKitPanel&) = delete;
    ~AppKitPanel() override {
        // The content may outlive the panel; its views must not.
        [panel_.get() setContentView:nil];
        [panel_.get() orderOut:nil];
    }

    void setTitle(std::string_view title) override { [panel_.get() setTitle:nsString(title)]; }
    void setAccessibilityLabel(std::string_view label) override {
        [panel_.get() setAccessibilityLabel:nsString(label)];
    }
    void setLevel(std::int64_t level) override {
        [panel_.get() setLevel:static_cast<NSWindowLevel>(level)];
    }
    void setFloatingPanel(bool floating) override {
        // Which would give the panel a level of its own.
        const NSWindowLevel level = [panel_.get() level];
        [panel_.get() setFloatingPanel:(floating ? YES : NO)];
        [panel_.get() setLevel:level];
    }
    void setHidesOnDeactivate(bool hides) override {
        [panel_.get() setHidesOnDeactivate:(hides ? YES : NO)];
    }
    void setCollectionBehavior(std::uint64_t behavior) override {
        [panel_.get() setCollectionBehavior:static_cast<NSWindowCollectionBehavior>(behavior)];
    }
    void setOpaque(bool opaque) override { [panel_.get() setOpaque:(opaque ? YES : NO)]; }
    void setBackground(PanelBackground background) override {
        [panel_.get() setBackgroundColor:colorOf(background)];
    }
    void setHasShadow(bool hasShadow) override {
        [panel_.get() setHasShadow:(hasShadow ? YES : NO)];
    }
    void setAnimationBehavior(AnimationBehavior behavior) override {
        [panel_.get() setAnimationBehavior:static_cast<NSWindowAnimationBehavior>(behavior)];
    }
    void setReleasedWhenClosed(bool released) override {
        [panel_.get() setReleasedWhenClosed:(released ? YES : NO)];
    }
    void setContent(std::shared_ptr<ui::Content> content) override {
        const auto view = makeHostingView(std::move(content), services_);
        [panel_.get() setContentView:view.get()];
    }

    void setContentSize(Size size) override {
        [panel_.get() setContentSize:nsSize(size)];
        // The shadow has the shape of what was drawn before.
        [panel_.get() invalidateShadow];
    }
    void setFrameOrigin(ScreenPoint origin) override {
        [panel_.get() setFrameOrigin:NSMakePoint(origin.x, origin.y)];
    }
    void orderFrontRegardless() override {
        [panel_.get() setAppearance:appearance_()];
        [panel_.get() orderFrontRegardless];
    }
    void orderOut() override {
        [panel_.get() orderOut:nil];
        forgetPointer([panel_.get() contentView]);
    }
    [[nodiscard]] bool isVisible() const override { return [panel_.get() isVisible] == YES; }

  private:
    HostingServices services_;
    AppKitPanels::Appearance appearance_;
    Owned<NSPanel*> panel_;
};

} // namespace

std::unique_ptr<Panel> AppKitPanels::panel(Size contentSize, std::uint32_t styleMask) {
    return std::make_unique<AppKitPanel>(contentSize, styleMask, services_, appearance_);
}

} // namespace pelistra::macos
