#pragma once

#include "base/Geometry.h"
#include "platform/macos/Owned.h"
#include "platform/macos/views/HostingServices.h"
#include "platform/macos/views/Motion.h"
#include "ui/Arrangement.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::macos {

// What the elements of one window share.
struct ElementContext {
    HostingServices services;
    // How the present update is shown; without one, at once.
    Motion* motion = nullptr;
    // What symbols without a colour of their own take.
    ui::Color foreground = {};
};

// One placed element on the screen: it keeps an NSView for as long as arrangements go on containing
// its key, and changes of it only what differs.
class Element {
  public:
    explicit Element(ElementContext& context) : context_(&context) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    // A new element inside the parent, not yet updated with the value.
    [[nodiscard]] static std::unique_ptr<Element> make(const ui::Placed& placed, NSView* parent,
                                                       ElementContext& context);
    // Brings the elements in a view to what is placed in it; the origin is the view's.
    static void updateAll(std::vector<std::unique_ptr<Element>>& elements,
                          const std::vector<ui::Placed>& placed, NSView* parent, NSPoint origin,
                          ElementContext& context);

    // Shows another value with the same key.
    virtual void update(const ui::Placed& placed, NSPoint origin);

    [[nodiscard]] NSView* view() const { return native_.get(); }
    [[nodiscard]] const std::string& key() const { return key_; }

  protected:
    // The NSView, made once; a plain container when it is not overridden.
    [[nodiscard]] virtual Owned<NSView*> makeView();
    // Brings the NSView, which has its frame, to the value. Sets only what differs.
    virtual void apply(const ui::Placed& /*placed*/) {}
    virtual void updateChildren(const ui::Placed& placed);
    // Where the children's views go, and where its corner lies in their coordinates.
    [[nodiscard]] virtual NSView* contentView() const { return view(); }
    [[nodiscard]] virtual NSPoint contentOrigin(const ui::Placed& placed) const;
    // Help text and name, on the view that a user or a screen reader finds.
    void say(const std::string& helpText, const std::string& name, NSView* carrier);

    template <class Kind> [[nodiscard]] const Kind& node() const { return *shown_->as<Kind>(); }
    [[nodiscard]] ElementContext& context() const { return *context_; }

  private:
    void place(NSRect frame);

    ElementContext* context_;
    std::optional<ui::View> shown_;
    std::string key_;
    std::string said_;
    Owned<NSView*> native_;
    std::vector<std::unique_ptr<Element>> children_;
};

[[nodiscard]] NSRect nsRect(const ui::Area& area);

// One function per family of nodes; null when the node is of another family.
[[nodiscard]] std::unique_ptr<Element> makeLeaf(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeShape(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeControl(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeScroll(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeGroup(const ui::View& view, ElementContext& context);

} // namespace pelistra::macos
