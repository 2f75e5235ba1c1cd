#pragma once

#include "tests/desktop/harness/NotifierClient.h"
#include "tests/menubar/BarFixture.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// Icons on a session bus of their own.
class NotifierFixture : public BarFixture {
protected:
    explicit NotifierFixture(const PrivateDisplay::Options& options = {.sessionBus = true})
        : BarFixture(options) {}

    static constexpr std::uint32_t red = 0xFFFF0000;
    static constexpr std::uint32_t blue = 0xFF0000FF;
    static constexpr std::uint32_t colorBits = 0xFFFFFF;
    static constexpr int iconSide = 22;

    void startBar(const std::vector<std::string>& options = {}) {
        BarFixture::startBar(options);
        ASSERT_TRUE(waitForWatcher(display_.environment().at("DBUS_SESSION_BUS_ADDRESS")));
    }

    [[nodiscard]] NotifierClient::Options plain(const std::string& id, std::uint32_t argb = red) {
        NotifierClient::Options options;
        options.address = display_.environment().at("DBUS_SESSION_BUS_ADDRESS");
        options.id = id;
        options.pixmaps = {NotifierClient::plainPixmap(iconSide, argb)};
        return options;
    }
    NotifierClient& add(const NotifierClient::Options& options) {
        return *notifiers_.emplace_back(std::make_unique<NotifierClient>(options));
    }
    void end(NotifierClient& client) {
        std::erase_if(notifiers_, [&](const auto& own) { return own.get() == &client; });
    }
    void endAll() { notifiers_.clear(); }
    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return BarFixture::eventually([&] {
            for (const auto& client : notifiers_) {
                client->handleEvents();
            }
            return condition();
        });
    }
    [[nodiscard]] bool shows(const std::vector<std::string>& ids) {
        return eventually([&] { return names() == ids; });
    }
    [[nodiscard]] WindowFrame frameOf(const std::string& id) {
        const auto window = x_.barItem(id);
        return window ? x_.frame(*window).value_or(WindowFrame{}) : WindowFrame{};
    }
    [[nodiscard]] bool isColored(const std::string& id, std::uint32_t argb) {
        return eventually([&] {
            const WindowFrame frame = frameOf(id);
            return (pixel(frame.midX(), frame.midY()) & colorBits) == (argb & colorBits);
        });
    }

private:
    std::vector<std::unique_ptr<NotifierClient>> notifiers_;
};

} // namespace pelistra::testing
