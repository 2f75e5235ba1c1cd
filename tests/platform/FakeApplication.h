#pragma once

#include "platform/Application.h"
#include "tests/platform/Journal.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// Journal: "activationPolicy = <raw value>", "activate", "terminate".
class FakeApplication final : public Application {
public:
    explicit FakeApplication(Journal& journal) : journal_(journal) {}

    void setActivationPolicy(ActivationPolicy policy) override;
    void activateIgnoringOtherApps() override { journal_.note("activate"); }
    void terminate() override { journal_.note("terminate"); }
    [[nodiscard]] std::optional<Event> currentEvent() const override { return event; }
    [[nodiscard]] const std::vector<std::string>& arguments() const override {
        return processArguments;
    }
    [[nodiscard]] std::optional<std::string> infoText(std::string_view key) const override;
    [[nodiscard]] ProcessId processIdentifier() const override { return pid; }
    [[nodiscard]] ScreenPoint mouseLocation() const override { return pointer; }

    std::optional<Event> event;
    std::vector<std::string> processArguments{"/opt/pelistra/bin/pelistra"};
    std::map<std::string, std::string, std::less<>> info{{"CFBundleShortVersionString", "1.4.2"}};
    ProcessId pid = 4711;
    ScreenPoint pointer{.x = 700, .y = 400};

private:
    Journal& journal_;
};

} // namespace pelistra::testing
