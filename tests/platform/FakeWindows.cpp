#include "tests/platform/FakeWindows.h"

#include <utility>

namespace pelistra::testing {
namespace {

class FakeWindow final : public Window {
public:
    FakeWindow(Journal& journal, std::shared_ptr<FakeWindowRecord> record)
        : journal_(journal), record_(std::move(record)) {}
    FakeWindow(const FakeWindow&) = delete;
    FakeWindow& operator=(const FakeWindow&) = delete;
    ~FakeWindow() override {
        journal_.note("window destroyed");
        record_->onScreen = false;
        record_->destroyed = true;
        record_->content = nullptr;
    }

    void setTitle(std::string_view title) override {
        journal_.note("title = " + std::string(title));
        record_->title = title;
    }
    void setTitleVisibility(TitleVisibility visibility) override {
        journal_.note("titleVisibility = " + std::to_string(static_cast<int>(visibility)));
        record_->titleVisibility = visibility;
    }
    void setTitlebarAppearsTransparent(bool transparent) override {
        journal_.note("titlebarAppearsTransparent = " + flag(transparent));
        record_->titlebarAppearsTransparent = transparent;
    }
    void setMovableByWindowBackground(bool movable) override {
        journal_.note("isMovableByWindowBackground = " + flag(movable));
        record_->movableByWindowBackground = movable;
    }
    void setReleasedWhenClosed(bool released) override {
        journal_.note("isReleasedWhenClosed = " + flag(released));
        record_->releasedWhenClosed = released;
    }
    void setContentMinSize(Size size) override {
        journal_.note("contentMinSize = " + dimensions(size));
        record_->contentMinSize = size;
    }
    void setContent(std::shared_ptr<ui::Content> content) override {
        journal_.note("content");
        record_->content = std::move(content);
    }
    void center() override { journal_.note("center"); }
    void showWindow() override {
        journal_.note("showWindow");
        record_->onScreen = true;
    }
    void close() override {
        journal_.note("close");
        record_->onScreen = false;
    }

private:
    Journal& journal_;
    std::shared_ptr<FakeWindowRecord> record_;
};

} // namespace

std::unique_ptr<Window> FakeWindows::window(Size contentSize, std::uint32_t styleMask) {
    journal_.note("window(" + dimensions(contentSize) + ", style " + std::to_string(styleMask) +
                  ")");
    auto record = std::make_shared<FakeWindowRecord>();
    record->contentSize = contentSize;
    record->styleMask = styleMask;
    made.push_back(record);
    return std::make_unique<FakeWindow>(journal_, std::move(record));
}

} // namespace pelistra::testing
