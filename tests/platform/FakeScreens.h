#pragma once

#include "base/HandlerList.h"
#include "platform/Screens.h"
#include "tests/platform/Journal.h"

#include <optional>
#include <vector>

namespace pelistra::testing {

// A screen whose frame starts at (x, 0), all of it visible, without a camera housing.
Screen plainScreen(double x, double width, double height = 982);

// Starts with one plain screen of 1512 points. Journal: "screens.observe".
class FakeScreens final : public Screens {
public:
    explicit FakeScreens(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::vector<Screen> screens() const override { return list; }
    [[nodiscard]] std::optional<Screen> main() const override { return mainScreen; }
    [[nodiscard]] SubscriptionPtr observeParameterChanges(std::function<void()> handler) override;

    void announceChange() { observers_.call(); }
    [[nodiscard]] std::size_t observers() const { return observers_.count(); }

    std::vector<Screen> list{plainScreen(0, 1512)};
    std::optional<Screen> mainScreen = plainScreen(0, 1512);

private:
    Journal& journal_;
    HandlerList<> observers_;
};

} // namespace pelistra::testing
