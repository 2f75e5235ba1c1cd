#pragma once

#include "platform/macos/AppKitApplication.h"
#include "platform/macos/AppKitImages.h"
#include "platform/macos/DispatchMainQueue.h"
#include "platform/macos/views/HostingView.h"
#include "tests/macos/standins/World.h"
#include "ui/Content.h"
#include "ui/Nodes.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace pelistra::macos {

// Shows whatever the test sets.
class Sheet final : public ui::Content {
  public:
    explicit Sheet(ui::View first) : shown(std::move(first)) {}
    ui::View body() override { return shown.get(); }
    Published<ui::View> shown;

  protected:
    std::vector<SubscriptionPtr> observeState(const std::function<void()>& changed) override {
        std::vector<SubscriptionPtr> tokens;
        tokens.push_back(ui::observeChanges(shown, changed));
        return tokens;
    }
};

class ShownView : public ::testing::Test {
  protected:
    void show(const ui::View& view, NSSize size = NSMakeSize(200, 100)) {
        sheet_ = std::make_shared<Sheet>(view);
        window_ = Owned<NSWindow*>::adopt([[NSWindow alloc]
            initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                      styleMask:NSWindowStyleMaskBorderless
                        backing:NSBackingStoreBuffered
                          defer:NO]);
        [window_.get() setReleasedWhenClosed:NO];
        const auto hosting = makeHostingView(
            sheet_, {.application = &application_, .mainQueue = &queue_, .images = &images_});
        [window_.get() setContentView:hosting.get()];
        [window_.get() orderFrontRegardless];
    }

    void change(const ui::View& view) {
        sheet_->shown.set(view);
        pelistra::testing::standins::runFor(0.02);
    }

    [[nodiscard]] NSView* content() const { return [window_.get() contentView]; }
    // Frames of the innermost views, from the top left of the content.
    [[nodiscard]] std::vector<NSRect> leaves() const {
        std::vector<NSRect> frames;
        collect(content(), frames);
        return frames;
    }

    void TearDown() override {
        [window_.get() orderOut:nil];
        [window_.get() setContentView:nil];
    }

  private:
    void collect(NSView* view, std::vector<NSRect>& frames) const {
        if ([[view subviews] count] == 0) {
            frames.push_back([view convertRect:[view bounds] toView:content()]);
        }
        for (NSView* subview in [view subviews]) {
            collect(subview, frames);
        }
    }

    AppKitApplication application_;
    DispatchMainQueue queue_;
    AppKitImages images_;
    std::shared_ptr<Sheet> sheet_;
    Owned<NSWindow*> window_;
};

inline ui::View box(double width, double height) {
    return ui::View(ui::FilledShape{.outline = ui::Rectangle{}, .fill = ui::Color{}})
        .frame({.width = width, .height = height});
}

} // namespace pelistra::macos
