#include "platform/macos/views/AlertSheet.h"

#include "platform/macos/Conversions.h"

#include <utility>

namespace pelistra::macos {

AlertSheet::~AlertSheet() { close(); }

void AlertSheet::show(const ui::Alert& alert, NSView* over) {
    wanted_.reset();
    if (!alert.isPresented) {
        close();
        return;
    }
    if (alert.occasion == occasion_) {
        return;
    }
    wanted_ = alert;
    // A sheet may run an event loop of its own, which must not run inside an update.
    if (!std::exchange(isScheduled_, true)) {
        mainQueue_->async(
            lifetime_.guard([this, view = Owned<NSView*>::share(over)] { open(view.get()); }));
    }
}

void AlertSheet::open(NSView* over) {
    isScheduled_ = false;
    NSWindow* window = [over window];
    if (!wanted_ || window == nil) {
        return;
    }
    close();
    const ui::Alert alert = *std::exchange(wanted_, std::nullopt);
    occasion_ = alert.occasion;
    window_ = Owned<NSWindow*>::share(window);
    native_ = Owned<NSAlert*>::adopt([[NSAlert alloc] init]);
    [native_.get() setMessageText:nsString(alert.title)];
    [native_.get() setInformativeText:nsString(alert.message)];
    NSButton* button = [native_.get() addButtonWithTitle:nsString(alert.button.label)];
    if (alert.button.role == ui::ButtonRole::Cancel) {
        [button setKeyEquivalent:@"\033"];
    }
    const auto action = alert.button.action;
    [native_.get() beginSheetModalForWindow:window
                          completionHandler:^(NSModalResponse response) {
                            (void)response;
                            action();
                          }];
}

void AlertSheet::close() {
    if (native_ && [window_.get() attachedSheet] == [native_.get() window]) {
        [window_.get() endSheet:[native_.get() window]];
    }
    native_.reset();
    window_.reset();
}

} // namespace pelistra::macos
