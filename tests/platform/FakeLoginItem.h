#pragma once

#include "platform/LoginItem.h"
#include "tests/platform/Journal.h"

#include <optional>
#include <string>

namespace pelistra::testing {

// Registers and unregisters as asked, unless told to refuse. Journal: "loginItem.register",
// "loginItem.unregister".
class FakeLoginItem final : public LoginItem {
public:
    explicit FakeLoginItem(Journal& journal) : journal_(journal) {}

    [[nodiscard]] LoginItemStatus status() const override { return current; }
    [[nodiscard]] std::optional<std::string> registerItem() override {
        return change("loginItem.register", statusWhenRegistered);
    }
    [[nodiscard]] std::optional<std::string> unregisterItem() override {
        return change("loginItem.unregister", LoginItemStatus::NotRegistered);
    }

    LoginItemStatus current = LoginItemStatus::NotRegistered;
    // What a successful registration leads to.
    LoginItemStatus statusWhenRegistered = LoginItemStatus::Enabled;
    // While present, every change fails with this text and changes nothing.
    std::optional<std::string> refusal;

private:
    std::optional<std::string> change(const char* what, LoginItemStatus to) {
        journal_.note(what);
        if (!refusal) {
            current = to;
        }
        return refusal;
    }

    Journal& journal_;
};

} // namespace pelistra::testing
