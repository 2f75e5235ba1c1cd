#pragma once

#include "platform/StatusBar.h"
#include "tests/platform/Journal.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pelistra::testing {

// Journal, after the item's name: ".image = ", ".toolTip = ", ".action = set|none",
// ".sendAction(on: <hexadecimal mask>)".
class FakeStatusButton final : public StatusButton {
public:
    FakeStatusButton(Journal& journal, std::shared_ptr<const std::string> itemName);

    void setImage(ImagePtr newImage) override;
    void setToolTip(std::string_view text) override;
    void setAction(std::function<void()> newAction) override;
    void sendActionOn(EventMask newMask) override;
    [[nodiscard]] std::optional<ScreenRect> windowFrame() const override { return window; }
    [[nodiscard]] std::optional<ScreenRect> frameOnScreen() const override { return frame; }

    ImagePtr image;
    std::string toolTip;
    std::function<void()> action;
    // Left-mouse-up until told otherwise.
    EventMask mask = maskOf(EventType::LeftMouseUp);
    std::optional<ScreenRect> window;
    std::optional<ScreenRect> frame;

private:
    void note(const std::string& what);

    Journal& journal_;
    std::shared_ptr<const std::string> itemName_;
};

// What there is to know about an item, kept also after the item is gone.
struct FakeStatusItemRecord {
    // The autosave name; "item <number>" before it is set.
    std::shared_ptr<std::string> name;
    double length = 0;
    bool visible = false;
    bool removed = false;
    // Empty it to take the button away.
    std::shared_ptr<FakeStatusButton> button;
};

// Journal: "statusItem(withLength: <length>)" and then, after the item's name,
// ".autosaveName = ", ".isVisible = ", ".length = ", ".removed".
class FakeStatusBar final : public StatusBar {
public:
    explicit FakeStatusBar(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::unique_ptr<StatusItem> statusItem(double withLength) override;

    // The item with that autosave name; throws when there is none.
    [[nodiscard]] FakeStatusItemRecord& item(std::string_view named);

    // In the order in which they were asked for.
    std::vector<std::shared_ptr<FakeStatusItemRecord>> items;
    // Numbers (from 0, in the order of asking) of the items that get no button.
    std::set<std::size_t> itemsWithoutButton;
    // Runs after an item was given a length, as a menu bar lays its items out.
    std::function<void()> afterLengthChange;

private:
    Journal& journal_;
};

} // namespace pelistra::testing
