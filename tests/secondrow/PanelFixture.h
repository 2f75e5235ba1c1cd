#pragma once

#include "platform/Panel.h"
#include "secondrow/SecondRowPanelController.h"
#include "tests/secondrow/SecondRowFixture.h"
#include "tests/ui/ViewQueries.h"
#include "ui/Content.h"

#include <memory>

namespace pelistra::testing {

// A panel controller on the fakes, and a button of 24 by 24 points in the middle of the menu bar of
// the one screen.
class PanelFixture : public SecondRowFixture {
protected:
    static constexpr double screenHeight = 982;
    static constexpr double barBottom = screenHeight - 24;

    [[nodiscard]] static ScreenRect buttonAt(double x, double y = barBottom) {
        return makeRect<ScreenSpace>(x, y, 24, 24);
    }
    [[nodiscard]] std::shared_ptr<FakeStatusButton> makeButton(const ScreenRect& frame) {
        auto button = std::make_shared<FakeStatusButton>(
            fakes_.journal, std::make_shared<const std::string>("button"));
        button->window = frame;
        button->frame = frame;
        return button;
    }
    [[nodiscard]] FakePanelRecord& panel() { return *fakes_.panels.made.at(0); }
    [[nodiscard]] ui::View body() { return panel().content->body(); }
    void show() { controller_->show(button_); }
    // Everything that the panel lists from now on.
    void noteVisibility() {
        controller_->onVisibilityChanged = [this](bool visible) {
            fakes_.journal.note(visible ? "told true" : "told false");
        };
    }
    void drainQueue() { fakes_.mainQueue.runUntilIdle(); }

    std::shared_ptr<FakeStatusButton> button_ = makeButton(buttonAt(744));
    std::unique_ptr<SecondRowPanelController> controller_ =
        std::make_unique<SecondRowPanelController>(fakes_.platform, store_);
};

} // namespace pelistra::testing
