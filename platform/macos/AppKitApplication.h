#pragma once

#include "platform/Application.h"

@class NSEvent;

namespace pelistra::macos {

// The event's raw type and modifier flags, as AppKit numbers them.
[[nodiscard]] Event eventOf(NSEvent* event);

// The running application, by NSApplication, NSProcessInfo and the main bundle. The shared
// NSApplication has to be there.
class AppKitApplication final : public Application {
  public:
    AppKitApplication();

    void setActivationPolicy(ActivationPolicy policy) override;
    void activateIgnoringOtherApps() override;
    void terminate() override;
    [[nodiscard]] std::optional<Event> currentEvent() const override;
    [[nodiscard]] const std::vector<std::string>& arguments() const override;
    [[nodiscard]] std::optional<std::string> infoText(std::string_view key) const override;
    [[nodiscard]] ProcessId processIdentifier() const override;
    [[nodiscard]] ScreenPoint mouseLocation() const override;

  private:
    std::vector<std::string> arguments_;
};

} // namespace pelistra::macos
