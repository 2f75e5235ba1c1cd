#include "tests/menubar/BarFixture.h"

#include <algorithm>

namespace pelistra::testing {

void BarFixture::TearDown() {
    if (bar_) {
        EXPECT_TRUE(bar_->process().isRunning());
        EXPECT_LE(std::ranges::count(bar_->process().output(), '\n'), allowedLines_)
            << bar_->process().output();
    }
}

BarUnderTest& BarFixture::startBar(const std::vector<std::string>& options) {
    bar_.reset();
    bar_ = std::make_unique<BarUnderTest>(display_, x_, options);
    EXPECT_TRUE(waitFor([this] { return x_.isViewable(x_.barWindow()); }));
    return *bar_;
}

void BarFixture::stopBar(int signal) {
    bar_->process().signal(signal);
    EXPECT_TRUE(bar_->process().waitForExit());
    EXPECT_TRUE(waitFor([this] { return x_.trayOwner() == XCB_WINDOW_NONE; }));
}

TrayClient& BarFixture::dock(const TrayClient::Options& options) {
    TrayClient& client =
        *clients_.emplace_back(std::make_unique<TrayClient>(display_.name(), options));
    EXPECT_TRUE(client.requestDock());
    EXPECT_TRUE(eventually([&] {
        const std::vector<xcb_window_t> items = x_.barItems();
        return !options.mappedFlag || std::ranges::find(items, client.window()) != items.end();
    }));
    return client;
}

void BarFixture::endClient(TrayClient& client) {
    const xcb_window_t window = client.window();
    std::erase_if(clients_, [&client](const auto& own) { return own.get() == &client; });
    EXPECT_TRUE(eventually([&] {
        const std::vector<xcb_window_t> items = x_.barItems();
        return std::ranges::find(items, window) == items.end();
    }));
}

void BarFixture::handleEvents() {
    for (const auto& client : clients_) {
        client->handleEvents();
    }
}

std::vector<std::string> BarFixture::names() {
    std::vector<std::string> result;
    for (const xcb_window_t window : x_.barItems()) {
        result.push_back(x_.windowClass(window).first);
    }
    return result;
}

WindowFrame BarFixture::frameOf(const TrayClient& client) {
    return x_.frame(client.window()).value_or(WindowFrame{});
}

std::optional<std::uint32_t> BarFixture::positionTold(const TrayClient& client) {
    const std::vector<std::uint32_t> words =
        x_.words(client.window(), "_PELISTRA_MENUBAR_POSITION");
    return words.empty() ? std::nullopt : std::optional(words.front());
}

std::uint32_t BarFixture::pixel(int x, int y) {
    return x_.capture({.x = x, .y = y, .width = 1, .height = 1}).at(0, 0);
}

} // namespace pelistra::testing
