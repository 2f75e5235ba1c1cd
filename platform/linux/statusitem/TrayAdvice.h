#pragma once

#include "platform/linux/statusitem/DesktopNotification.h"
#include "platform/x11/Connection.h"

#include <optional>
#include <string>
#include <string_view>

namespace pelistra::linux {

struct AdviceText {
    std::string summary;
    std::string body;
};

// What a user can do about a tray of that program, whose name is empty when it is not known, in
// Chinese or English.
[[nodiscard]] AdviceText adviceAbout(std::string_view trayProgram, bool inChinese);

// Tells the user that the tray that is there has no room for what is to be hidden: whose it is and
// what to do, by a notification and on standard error, in the language of the user's locale.
class TrayAdvice {
public:
    explicit TrayAdvice(const x11::Connection& connection) : connection_(connection) {}

    // Does so the first time that it is called, about the tray with that owner.
    void give(xcb_window_t trayOwner);

private:
    const x11::Connection& connection_;
    std::optional<DesktopNotification> notification_;
    bool isGiven_ = false;
};

} // namespace pelistra::linux
