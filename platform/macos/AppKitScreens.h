#pragma once

#include "platform/Screens.h"

namespace pelistra::macos {

// The screens, by NSScreen.
class AppKitScreens final : public Screens {
public:
    [[nodiscard]] std::vector<Screen> screens() const override;
    [[nodiscard]] std::optional<Screen> main() const override;
    [[nodiscard]] SubscriptionPtr observeParameterChanges(std::function<void()> handler) override;
};

} // namespace pelistra::macos
