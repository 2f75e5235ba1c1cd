#pragma once

#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/TrayClient.h"
#include "tests/desktop/harness/UserInput.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {

// The real bar on a private X server without a window manager, and icons of the tests' own.
class BarFixture : public ::testing::Test {
protected:
    explicit BarFixture(const PrivateDisplay::Options& options = {}) : display_(options) {}

    static constexpr int screenWidth = 1280;
    static constexpr int barHeight = 28;

    // At the end the bar still runs, and has had nothing to complain of but what was allowed.
    void TearDown() override;

    BarUnderTest& startBar(const std::vector<std::string>& options = {});
    void stopBar(int signal);
    // The bar has ended, as it should.
    void forgetBar() { bar_.reset(); }
    [[nodiscard]] BarUnderTest& bar() { return *bar_; }

    // Docks a client and waits until it is there.
    TrayClient& dock(const TrayClient::Options& options);
    TrayClient& dockNamed(const std::string& name) {
        return dock(TrayClient::Options{.name = name});
    }
    // Closes the connection of a docked client and waits until it is gone from the bar.
    void endClient(TrayClient& client);

    // Lets all clients handle what has come, then looks.
    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return waitFor([&] {
            handleEvents();
            return condition();
        });
    }
    void handleEvents();

    // The names of the items, left to right.
    [[nodiscard]] std::vector<std::string> names();
    // Whether they come to be that. The bar tells others only after it has written the order down.
    [[nodiscard]] bool comesToBe(const std::vector<std::string>& order) {
        return eventually([&] { return names() == order; });
    }
    [[nodiscard]] WindowFrame frameOf(const TrayClient& client);
    // What the bar tells a client about its place; empty when it has told nothing.
    [[nodiscard]] std::optional<std::uint32_t> positionTold(const TrayClient& client);
    [[nodiscard]] std::uint32_t pixel(int x, int y);

    void allowComplaints(int lines) { allowedLines_ = lines; }

    PrivateDisplay display_;
    XClient x_{display_.name()};
    UserInput user_{x_};

private:
    std::unique_ptr<BarUnderTest> bar_;
    std::vector<std::unique_ptr<TrayClient>> clients_;
    int allowedLines_ = 0;
};

} // namespace pelistra::testing
