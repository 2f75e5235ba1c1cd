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

std::unique_ptr<Panel> FakePanels::panel(const PanelConfiguration& configuration) {
    journal_.note("panel(" + dimensions(configuration.contentSize) + ", style " +
                  std::to_string(configuration.styleMask) + ")");
    auto record = std::make_shared<FakePanelRecord>();
    record->configuration = configuration;
    record->contentSize = configuration.contentSize;
    made.push_back(record);
    return std::make_unique<FakePanel>(journal_, std::move(record));
}

} // namespace pelistra::testing
