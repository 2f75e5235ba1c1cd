#pragma once

#include "platform/Geometry.h"
#include "platform/macos/Owned.h"
#include "platform/macos/views/HostingServices.h"
#include "platform/macos/views/Motion.h"
#include "ui/Nodes.h"
#include "ui/View.h"

#import <AppKit/AppKit.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace pelistra::appkit {

// A size that a parent offers. An empty member asks for the size that the child would like best.
struct Proposal {
    std::optional<double> width;
    std::optional<double> height;
};

enum class Axis { None, Horizontal, Vertical };

// What the elements of one window share.
struct ElementContext {
    HostingServices services;
    // How the present update is shown; without one, at once.
    Motion* motion = nullptr;
    // What of the window's top the title bar covers.
    double titleBarHeight = 0;
};

// One node of a view tree on the screen: it keeps an NSView for as long as bodies go on containing
// the node, and changes of it only what differs. Frames are in the parent element's view, whose
// origin is at the top left.
class Element {
  public:
    explicit Element(ElementContext& context) : context_(&context) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    // A new element that shows the view, inside the parent.
    [[nodiscard]] static std::unique_ptr<Element> make(const ui::View& view, NSView* parent,
                                                       Axis axis, ElementContext& context);

    // Shows another view of the same kind.
    void update(const ui::View& view);

    // The size that it takes when it is offered that much.
    [[nodiscard]] virtual Size measure(const Proposal& proposal) = 0;
    void place(NSRect frame);

    [[nodiscard]] NSView* view() const { return native_.get(); }
    [[nodiscard]] const ui::View& shown() const { return *shown_; }
    [[nodiscard]] const std::vector<std::unique_ptr<Element>>& children() const {
        return children_;
    }

    // Fades out and is gone when that is over.
    static void leave(std::unique_ptr<Element> element);

  protected:
    // The NSView, made once; a plain container when it is not overridden.
    [[nodiscard]] virtual Owned<NSView*> makeView();
    // Brings the NSView to the node that is now shown(). Sets only what differs.
    virtual void apply() {}
    // Where the children's views go.
    [[nodiscard]] virtual NSView* contentView() const { return view(); }
    // Places the children in an area of that size.
    virtual void arrange(Size size);
    // Along which axis the children are stacked; what is asked in a modifier goes on.
    [[nodiscard]] virtual Axis childAxis() const { return axis_; }

    template <class Kind> [[nodiscard]] const Kind& node() const { return *shown_->as<Kind>(); }
    [[nodiscard]] Element& child(std::size_t index) const { return *children_.at(index); }
    [[nodiscard]] ElementContext& context() const { return *context_; }
    [[nodiscard]] Axis axis() const { return axis_; }

  private:
    void begin(const ui::View& view, NSView* parent, Axis axis);
    void updateChildren(const std::vector<ui::View>& before, const std::vector<ui::View>& after);
    void orderChildViews();

    ElementContext* context_;
    Axis axis_ = Axis::None;
    std::optional<ui::View> shown_;
    Owned<NSView*> native_;
    std::vector<std::unique_ptr<Element>> children_;
};

// Whether the view's background lies under the title bar too. The outermost one does; it then keeps
// its content below.
[[nodiscard]] bool reachesUnderTitleBar(const ui::View& view);

// One function per family of nodes; null when the node is of another family.
[[nodiscard]] std::unique_ptr<Element> makeLeaf(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeShape(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeControl(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeStack(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeScroll(const ui::View& view, ElementContext& context);
[[nodiscard]] std::unique_ptr<Element> makeModifier(const ui::View& view, ElementContext& context);

} // namespace pelistra::appkit
