#include "tests/platform/FakeScreens.h"

#include <utility>

namespace pelistra::testing {

Screen plainScreen(double x, double width, double height) {
    const auto frame = makeRect<ScreenSpace>(x, 0, width, height);
    return {.frame = frame,
            .visibleFrame = frame,
            .auxiliaryTopLeftArea = std::nullopt,
            .auxiliaryTopRightArea = std::nullopt};
}

SubscriptionPtr FakeScreens::observeParameterChanges(std::function<void()> handler) {
    journal_.note("screens.observe");
    return observers_.add(std::move(handler));
}

} // namespace pelistra::testing
