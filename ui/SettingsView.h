#pragma once

#include "base/Lifetime.h"
#include "ui/Content.h"
#include "ui/LaunchAtLoginManager.h"

#include <functional>
#include <string>
#include <vector>

namespace pelistra {
class Application;
class LoginItem;
} // namespace pelistra

namespace pelistra::ui {

// The content of the settings window: how to use the menu bar's sections, and the general controls.
class SettingsView final : public Content {
public:
    // The content is never smaller than this, in points.
    static constexpr double minimumWidth = 600;
    static constexpr double minimumHeight = 520;

    // The application and the login item outlive the view. showOnboarding is called when the user
    // asks for the guide.
    SettingsView(Application& application, LoginItem& loginItem,
                 std::function<void()> showOnboarding);

    [[nodiscard]] View body() override;

    // One numbered row of the instructions.
    [[nodiscard]] static View instruction(int number, const std::string& title,
                                          const std::string& detail);

    LaunchAtLoginManager launchAtLogin;

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) override;

private:
    [[nodiscard]] std::vector<View> generalRows();

    Application& application_;
    std::function<void()> showOnboarding_;
    Lifetime lifetime_;
};

} // namespace pelistra::ui
