#include "platform/linux/AbsentServices.h"

namespace pelistra::desktop {

namespace {

class AbsentPanel final : public Panel {
public:
    void setTitle(std::string_view /*title*/) override {}
    void setAccessibilityLabel(std::string_view /*label*/) override {}
    void setLevel(std::int64_t /*level*/) override {}
    void setFloatingPanel(bool /*floating*/) override {}
    void setHidesOnDeactivate(bool /*hides*/) override {}
    void setCollectionBehavior(std::uint64_t /*behavior*/) override {}
    void setOpaque(bool /*opaque*/) override {}
    void setBackground(PanelBackground /*background*/) override {}
    void setHasShadow(bool /*hasShadow*/) override {}
    void setAnimationBehavior(AnimationBehavior /*behavior*/) override {}
    void setReleasedWhenClosed(bool /*released*/) override {}
    void setContent(std::shared_ptr<ui::Content> /*content*/) override {}
    void setContentSize(Size /*size*/) override {}
    void setFrameOrigin(ScreenPoint /*origin*/) override {}
    void orderFrontRegardless() override {}
    void orderOut() override {}
    [[nodiscard]] bool isVisible() const override { return false; }
};

} // namespace

std::unique_ptr<EventSource> AbsentEventPosting::source(EventSourceState /*state*/) {
    return nullptr;
}

std::unique_ptr<MouseEvent> AbsentEventPosting::mouseEvent(EventSource& /*source*/,
                                                           EventType /*type*/, Point /*location*/,
                                                           MouseButton /*button*/) {
    return nullptr;
}

bool AbsentEventPosting::postToPid(ProcessId /*processIdentifier*/, const MouseEvent& /*event*/) {
    return false;
}

std::unique_ptr<Panel> AbsentPanels::panel(Size /*contentSize*/, std::uint32_t /*styleMask*/) {
    return std::make_unique<AbsentPanel>();
}

} // namespace pelistra::desktop
