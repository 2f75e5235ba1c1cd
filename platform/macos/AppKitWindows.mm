#include "platform/macos/AppKitWindows.h"

#include "platform/MainQueue.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/Owned.h"
#include "platform/macos/views/HostingView.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace pelistra::macos {

namespace {

static_assert(window_style::titled == NSWindowStyleMaskTitled);
static_assert(window_style::closable == NSWindowStyleMaskClosable);
static_assert(window_style::miniaturizable == NSWindowStyleMaskMiniaturizable);
static_assert(window_style::resizable == NSWindowStyleMaskResizable);
static_assert(window_style::fullSizeContentView == NSWindowStyleMaskFullSizeContentView);
static_assert(static_cast<NSInteger>(TitleVisibility::Hidden) == NSWindowTitleHidden);

Owned<NSWindow*> makeWindow(Size contentSize, std::uint32_t styleMask) {
    return Owned<NSWindow*>::adopt([[NSWindow alloc]
        initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                  styleMask:static_cast<NSWindowStyleMask>(styleMask)
                    backing:NSBackingStoreBuffered
                      defer:NO]);
}

class AppKitWindow final : public Window {
  public:
    AppKitWindow(Owned<NSWindow*> window, const HostingServices& services)
        : services_(services), window_(std::move(window)) {}
    AppKitWindow(const AppKitWindow&) = delete;
    AppKitWindow& operator=(const AppKitWindow&) = delete;
    ~AppKitWindow() override {
        // The content may outlive the window; its views must not. Still they stay until the event
        // is over that led here, which may be one of theirs.
        services_.mainQueue->async([view = Owned<NSView*>::share([window_.get() contentView])] {});
        [window_.get() setContentView:nil];
        if ([window_.get() isVisible]) {
            [controller_.get() close];
        }
    }

    void setTitle(std::string_view title) override { [window_.get() setTitle:nsString(title)]; }
    void setTitleVisibility(TitleVisibility visibility) override {
        [window_.get() setTitleVisibility:static_cast<NSWindowTitleVisibility>(visibility)];
    }
    void setTitlebarAppearsTransparent(bool transparent) override {
        [window_.get() setTitlebarAppearsTransparent:(transparent ? YES : NO)];
    }
    void setMovableByWindowBackground(bool movable) override {
        [window_.get() setMovableByWindowBackground:(movable ? YES : NO)];
    }
    void setReleasedWhenClosed(bool released) override {
        [window_.get() setReleasedWhenClosed:(released ? YES : NO)];
    }
    void setContentMinSize(Size size) override { [window_.get() setContentMinSize:nsSize(size)]; }
    void setContent(std::shared_ptr<ui::Content> content) override {
        const auto view = makeHostingView(std::move(content), services_);
        [window_.get() setContentView:view.get()];
    }
    void center() override { [window_.get() center]; }

    void showWindow() override {
        // Made as late as this because it is the last to be set up: the controller takes over the
        // window as it is, and a window with a controller survives its close button.
        if (!controller_) {
            controller_ = Owned<NSWindowController*>::adopt(
                [[NSWindowController alloc] initWithWindow:window_.get()]);
        }
        [controller_.get() showWindow:nil];
        // Activating alone leaves the window behind those of the application that is active now.
        [window_.get() orderFrontRegardless];
    }
    void close() override { [controller_.get() close]; }

  private:
    HostingServices services_;
    Owned<NSWindow*> window_;
    Owned<NSWindowController*> controller_;
};

} // namespace

std::unique_ptr<Window> AppKitWindows::window(Size contentSize, std::uint32_t styleMask) {
    return std::make_unique<AppKitWindow>(makeWindow(contentSize, styleMask), services_);
}

} // namespace pelistra::macos
