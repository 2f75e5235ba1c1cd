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
    AppKitPanel(const PanelConfiguration& configuration, const HostingServices& services,
                AppKitPanels::Appearance appearance)
        : services_(services), appearance_(std::move(appearance)),
          panel_(Owned<NSPanel*>::adopt([[NSPanel alloc]
              initWithContentRect:NSMakeRect(0, 0, configuration.contentSize.width,
                                             configuration.contentSize.height)
                        styleMask:static_cast<NSWindowStyleMask>(configuration.styleMask)
                          backing:NSBackingStoreBuffered
                            defer:NO])) {
        NSPanel* const panel = panel_.get();
        [panel setTitle:nsString(configuration.title)];
        [panel setAccessibilityLabel:nsString(configuration.accessibilityLabel)];
        // First, because it gives the panel a level of its own.
        [panel setFloatingPanel:(configuration.isFloatingPanel ? YES : NO)];
        [panel setLevel:static_cast<NSWindowLevel>(configuration.level)];
        [panel setHidesOnDeactivate:(configuration.hidesOnDeactivate ? YES : NO)];
        [panel setCollectionBehavior:static_cast<NSWindowCollectionBehavior>(
                                         configuration.collectionBehavior)];
        [panel setOpaque:(configuration.isOpaque ? YES : NO)];
        [panel setBackgroundColor:colorOf(configuration.background)];
        [panel setHasShadow:(configuration.hasShadow ? YES : NO)];
        [panel setAnimationBehavior:static_cast<NSWindowAnimationBehavior>(
                                        configuration.animationBehavior)];
        [panel setReleasedWhenClosed:(configuration.isReleasedWhenClosed ? YES : NO)];
        // The application is never the active one while its panel is used.
        [panel setAllowsToolTipsWhenApplicationIsInactive:YES];
    }
    AppKitPanel(const AppKitPanel&) = delete;
    AppKitPanel& operator=(const AppKitPanel&) = delete;
    ~AppKitPanel() override {
        // The content may outlive the panel; its views must not.
        [panel_.get() setContentView:nil];
        [panel_.get() orderOut:nil];
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

std::unique_ptr<Panel> AppKitPanels::panel(const PanelConfiguration& configuration) {
    return std::make_unique<AppKitPanel>(configuration, services_, appearance_);
}

} // namespace pelistra::macos
