#include "platform/linux/views/ButtonElement.h"
#include "platform/linux/views/GroupElements.h"
#include "platform/linux/views/LeafElements.h"
#include "platform/linux/views/RepresentedElement.h"
#include "platform/linux/views/ScrollElements.h"
#include "platform/linux/views/TextElement.h"
#include "platform/linux/views/ToggleElement.h"

#include <variant>

namespace pelistra::linux {

namespace {

template <class Kind>
struct ElementFor;

// clang-format off
template <> struct ElementFor<ui::Text> { using Type = TextElement; };
template <> struct ElementFor<ui::Symbol> { using Type = SymbolElement; };
template <> struct ElementFor<ui::Picture> { using Type = PictureElement; };
template <> struct ElementFor<ui::Button> { using Type = ButtonElement; };
template <> struct ElementFor<ui::Toggle> { using Type = ToggleElement; };
template <> struct ElementFor<ui::Divider> { using Type = DividerElement; };
template <> struct ElementFor<ui::FilledShape> { using Type = FilledShapeElement; };
template <> struct ElementFor<ui::StrokedShape> { using Type = StrokedShapeElement; };
template <> struct ElementFor<ui::Represented> { using Type = RepresentedElement; };
template <> struct ElementFor<ui::HorizontalScroll> { using Type = HorizontalScrollElement; };
template <> struct ElementFor<ui::GroupedForm> { using Type = GroupedFormElement; };
template <> struct ElementFor<ui::Entering> { using Type = EnteringElement; };
template <> struct ElementFor<ui::Animated> { using Type = AnimatedElement; };
// clang-format on

// Whatever else there is never is an element of its own.
template <class Kind>
concept Shown = requires { typename ElementFor<Kind>::Type; };

} // namespace

ElementPtr makeElement(const ui::Placed& placed, Scene& scene, Element* parent) {
    return std::visit(
        [&scene, parent]<class Kind>(const Kind& /*node*/) -> ElementPtr {
            if constexpr (Shown<Kind>) {
                return std::make_unique<typename ElementFor<Kind>::Type>(scene, parent);
            } else {
                return std::make_unique<Element>(scene, parent);
            }
        },
        placed.view.node().kind);
}

} // namespace pelistra::linux
