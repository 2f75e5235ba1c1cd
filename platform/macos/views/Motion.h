#pragma once

#include "platform/MainQueue.h"
#include "ui/Animation.h"

#import <AppKit/AppKit.h>

#include <memory>

namespace pelistra::macos {

class Element;

// Shows the changes of one update with an animation. The views have their new state at once; only
// what their layers show runs after it.
class Motion {
  public:
    // The main queue outlives the views.
    Motion(const ui::Animation& animation, MainQueue& mainQueue)
        : animation_(animation), mainQueue_(&mainQueue) {}

    // Gives the view another frame.
    void move(NSView* view, NSRect frame) const;
    // The view, which is filled by its layer, gets another colour than its layer has by now.
    void recolor(NSView* view) const;
    // The view appears: from opacity 0 and the scale about its centre.
    void enter(NSView* view, double scale) const;
    // The view disappears in the same way, to that scale, and its owner is let go of at the end.
    void leave(NSView* view, double scale, std::shared_ptr<Element> owner) const;

  private:
    // To what the layer has by now, when there is no other end.
    void animate(NSView* view, NSString* keyPath, id from, NSValue* to = nil) const;
    void scaleFrom(NSView* view, double scale) const;
    void scaleTo(NSView* view, double scale) const;
    [[nodiscard]] double duration() const;

    ui::Animation animation_;
    MainQueue* mainQueue_;
};

} // namespace pelistra::macos
