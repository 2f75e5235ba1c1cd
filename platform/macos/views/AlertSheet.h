#pragma once

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/macos/Owned.h"
#include "ui/Nodes.h"

#import <AppKit/AppKit.h>

#include <cstdint>
#include <optional>

namespace pelistra::macos {

// Shows an alert over a window: once for each occasion while it is presented, and no longer than
// that. An occasion without a window waits for one.
class AlertSheet {
public:
    explicit AlertSheet(MainQueue& mainQueue) : mainQueue_(&mainQueue) {}
    AlertSheet(const AlertSheet&) = delete;
    AlertSheet& operator=(const AlertSheet&) = delete;
    ~AlertSheet();

    // Brings what is shown over the window of the view to the alert's state, on a later turn.
    void show(const ui::Alert& alert, NSView* over);

private:
    void open(NSView* over);
    void close();

    MainQueue* mainQueue_;
    // What to show on the later turn; empty when nothing is presented any more.
    std::optional<ui::Alert> wanted_;
    bool isScheduled_ = false;
    // The one that was shown last.
    std::uint64_t occasion_ = 0;
    Owned<NSAlert*> native_;
    Owned<NSWindow*> window_;
    Lifetime lifetime_;
};

} // namespace pelistra::macos
