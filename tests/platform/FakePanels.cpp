#include "tests/platform/FakePanels.h"

#include <utility>

namespace pelistra::testing {
namespace {

class FakePanel final : public Panel {
public:
    FakePanel(Journal& journal, std::shared_ptr<FakePanelRecord> record)
        : journal_(journal), record_(std::move(record)) {}
    FakePanel(const FakePanel&) = delete;
    FakePanel& operator=(const FakePanel&) = delete;
    ~FakePanel() override {
        journal_.note("panel destroyed");
        record_->visible = false;
        record_->destroyed = true;
        record_->content = nullptr;
    }

    void setTitle(std::string_view title) override {
        note("title", std::string(title));
        record_->title = title;
    }
    void setAccessibilityLabel(std::string_view label) override {
        note("accessibilityLabel", std::string(label));
        record_->accessibilityLabel = label;
    }
    void setLevel(std::int64_t level) override {
        note("level", std::to_string(level));
        record_->level = level;
    }
    void setFloatingPanel(bool floating) override {
        note("isFloatingPanel", flag(floating));
        record_->floatingPanel = floating;
    }
    void setHidesOnDeactivate(bool hides) override {
        note("hidesOnDeactivate", flag(hides));
        record_->hidesOnDeactivate = hides;
    }
    void setCollectionBehavior(std::uint64_t behavior) override {
        note("collectionBehavior", std::to_string(behavior));
        record_->collectionBehavior = behavior;
    }
    void setOpaque(bool opaque) override {
        note("isOpaque", flag(opaque));
        record_->opaque = opaque;
    }
    void setBackground(PanelBackground background) override {
        note("background", background == PanelBackground::Clear ? "clear" : "window");
        record_->background = background;
    }
    void setHasShadow(bool hasShadow) override {
        note("hasShadow", flag(hasShadow));
        record_->hasShadow = hasShadow;
    }
    void setAnimationBehavior(AnimationBehavior behavior) override {
        note("animationBehavior", std::to_string(static_cast<int>(behavior)));
        record_->animationBehavior = behavior;
    }
    void setReleasedWhenClosed(bool released) override {
        note("isReleasedWhenClosed", flag(released));
        record_->releasedWhenClosed = released;
    }
    void setContent(std::shared_ptr<ui::Content> content) override {
        journal_.note("panel.content");
        record_->content = std::move(content);
    }
    void setContentSize(Size size) override {
        note("contentSize", dimensions(size));
        record_->contentSize = size;
    }
    void setFrameOrigin(ScreenPoint origin) override {
        note("frameOrigin", decimal(origin.x) + ", " + decimal(origin.y));
        record_->frameOrigin = origin;
    }
    void orderFrontRegardless() override {
        journal_.note("panel.orderFrontRegardless");
        record_->visible = true;
    }
    void orderOut() override {
        journal_.note("panel.orderOut");
        record_->visible = false;
    }
    [[nodiscard]] bool isVisible() const override { return record_->visible; }

private:
    void note(const char* property, const std::string& value) {
        journal_.note("panel." + std::string(property) + " = " + value);
    }

    Journal& journal_;
    std::shared_ptr<FakePanelRecord> record_;
};

} // namespace

std::unique_ptr<Panel> FakePanels::panel(Size contentSize, std::uint32_t styleMask) {
    journal_.note("panel(" + dimensions(contentSize) + ", style " + std::to_string(styleMask) +
                  ")");
    auto record = std::make_shared<FakePanelRecord>();
    record->contentSize = contentSize;
    record->styleMask = styleMask;
    made.push_back(record);
    return std::make_unique<FakePanel>(journal_, std::move(record));
}

} // namespace pelistra::testing
