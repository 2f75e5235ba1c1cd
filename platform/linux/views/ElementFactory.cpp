#include "platform/linux/views/ButtonElement.h"
#include "platform/linux/views/EnteringElement.h"
#include "platform/linux/views/LeafElements.h"
#include "platform/linux/views/ModifierElements.h"
#include "platform/linux/views/RepresentedElement.h"
#include "platform/linux/views/ScrollElements.h"
#include "platform/linux/views/StackElements.h"
#include "platform/linux/views/TextElement.h"
#include "platform/linux/views/ToggleElement.h"

#include <variant>

namespace pelistra::desktop {

namespace {

template <class Kind>
struct ElementFor;

// clang-format off
template <> struct ElementFor<ui::Text> { using Type = TextElement; };
template <> struct ElementFor<ui::Symbol> { using Type = SymbolElement; };
template <> struct ElementFor<ui::Picture> { using Type = PictureElement; };
template <> struct ElementFor<ui::Button> { using Type = ButtonElement; };
template <> struct ElementFor<ui::Toggle> { using Type = ToggleElement; };
template <> struct ElementFor<ui::Spacer> { using Type = SpacerElement; };
template <> struct ElementFor<ui::Divider> { using Type = DividerElement; };
template <> struct ElementFor<ui::FilledShape> { using Type = FilledShapeElement; };
template <> struct ElementFor<ui::StrokedShape> { using Type = StrokedShapeElement; };
template <> struct ElementFor<ui::Represented> { using Type = RepresentedElement; };
template <> struct ElementFor<ui::HStack> { using Type = HStackElement; };
template <> struct ElementFor<ui::VStack> { using Type = VStackElement; };
template <> struct ElementFor<ui::ZStack> { using Type = ZStackElement; };
template <> struct ElementFor<ui::HorizontalScroll> { using Type = HorizontalScrollElement; };
template <> struct ElementFor<ui::GroupedForm> { using Type = GroupedFormElement; };
template <> struct ElementFor<ui::Padding> { using Type = PaddingElement; };
template <> struct ElementFor<ui::Frame> { using Type = FrameElement; };
template <> struct ElementFor<ui::Background> { using Type = BackgroundElement; };
template <> struct ElementFor<ui::Overlay> { using Type = OverlayElement; };
template <> struct ElementFor<ui::Clip> { using Type = ClipElement; };
template <> struct ElementFor<ui::ContentShape> { using Type = ContentShapeElement; };
template <> struct ElementFor<ui::Help> { using Type = HelpElement; };
template <> struct ElementFor<ui::AccessibilityLabel> { using Type = AccessibilityLabelElement; };
template <> struct ElementFor<ui::Identified> { using Type = IdentifiedElement; };
template <> struct ElementFor<ui::Entering> { using Type = EnteringElement; };
template <> struct ElementFor<ui::Animated> { using Type = AnimatedElement; };
template <> struct ElementFor<ui::WithAlert> { using Type = WithAlertElement; };
// clang-format on

} // namespace

ElementPtr makeElement(const ui::View& view, Scene& scene, Element* parent) {
    return std::visit(
        [&scene, parent]<class Kind>(const Kind& /*node*/) -> ElementPtr {
            return std::make_unique<typename ElementFor<Kind>::Type>(scene, parent);
        },
        view.node().kind);
}

} // namespace pelistra::desktop
