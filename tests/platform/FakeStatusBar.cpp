#include "tests/platform/FakeStatusBar.h"

#include "tests/platform/FakeImages.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace pelistra::testing {
namespace {

std::string hexadecimal(EventMask mask) {
    std::array<char, 20> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), mask, 16).ptr;
    return "0x" + std::string(text.data(), end);
}

class FakeStatusItem final : public StatusItem {
public:
    FakeStatusItem(Journal& journal, const std::function<void()>& afterLengthChange,
                   std::shared_ptr<FakeStatusItemRecord> record)
        : journal_(journal), afterLengthChange_(afterLengthChange), record_(std::move(record)) {}
    FakeStatusItem(const FakeStatusItem&) = delete;
    FakeStatusItem& operator=(const FakeStatusItem&) = delete;
    ~FakeStatusItem() override {
        note(".removed");
        record_->removed = true;
    }

    void setAutosaveName(std::string_view name) override {
        note(".autosaveName = " + std::string(name));
        *record_->name = name;
    }
    void setVisible(bool visible) override {
        note(std::string(".isVisible = ") + (visible ? "true" : "false"));
        record_->visible = visible;
    }
    void setLength(double length) override {
        note(".length = " + decimal(length));
        record_->length = length;
        if (afterLengthChange_) {
            afterLengthChange_();
        }
    }
    [[nodiscard]] double length() const override { return record_->length; }
    [[nodiscard]] std::shared_ptr<StatusButton> button() const override { return record_->button; }

private:
    void note(const std::string& what) { journal_.note(*record_->name + what); }

    Journal& journal_;
    const std::function<void()>& afterLengthChange_;
    std::shared_ptr<FakeStatusItemRecord> record_;
};

} // namespace

FakeStatusButton::FakeStatusButton(Journal& journal, std::shared_ptr<const std::string> itemName)
    : journal_(journal), itemName_(std::move(itemName)) {}

void FakeStatusButton::note(const std::string& what) {
    journal_.note(*itemName_ + what);
}

void FakeStatusButton::setImage(ImagePtr newImage) {
    note(".image = " + imageName(newImage));
    image = std::move(newImage);
}

void FakeStatusButton::setToolTip(std::string_view text) {
    note(".toolTip = " + std::string(text));
    toolTip = text;
}

void FakeStatusButton::setAction(std::function<void()> newAction) {
    note(std::string(".action = ") + (newAction ? "set" : "none"));
    action = std::move(newAction);
}

void FakeStatusButton::sendActionOn(EventMask newMask) {
    note(".sendAction(on: " + hexadecimal(newMask) + ")");
    mask = newMask;
}

std::unique_ptr<StatusItem> FakeStatusBar::statusItem(double withLength) {
    journal_.note("statusItem(withLength: " + decimal(withLength) + ")");
    auto record = std::make_shared<FakeStatusItemRecord>();
    record->name = std::make_shared<std::string>("item " + std::to_string(items.size() + 1));
    record->length = withLength;
    if (!itemsWithoutButton.contains(items.size())) {
        record->button = std::make_shared<FakeStatusButton>(journal_, record->name);
    }
    items.push_back(record);
    return std::make_unique<FakeStatusItem>(journal_, afterLengthChange, std::move(record));
}

FakeStatusItemRecord& FakeStatusBar::item(std::string_view named) {
    const auto found =
        std::ranges::find_if(items, [&](const auto& record) { return *record->name == named; });
    if (found == items.end()) {
        throw std::out_of_range("no status item named " + std::string(named));
    }
    return **found;
}

} // namespace pelistra::testing
