#include "platform/linux/loop/EventPump.h"

#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/XClient.h"
#include "tests/linux/loop/RunUntil.h"
#include "tests/platform/FakeLogSink.h"

#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace pelistra::testing {

namespace {

using linux::EventPump;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

constexpr std::uint32_t many = 5000;

class EventPumpTest : public ::testing::Test {
protected:
    EventPumpTest() {
        xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, window_, connection_->root(), 0,
                          0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
        const x11::Owned<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
            connection_->get(), xcb_get_input_focus(connection_->get()), nullptr));
    }

    // Another program talks to our window; each message carries the next number.
    void send(std::uint32_t count) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window_;
        message.type = XCB_ATOM_INTEGER;
        for (std::uint32_t i = 0; i < count; ++i) {
            message.data.data32[0] = sent_++;
            xcb_send_event(client_.get(), 0, window_, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char*>(&message));
        }
        client_.sync();
    }

    static void append(std::vector<std::uint32_t>& numbers, const xcb_generic_event_t& event) {
        if (x11::typeOf(event) == XCB_CLIENT_MESSAGE) {
            numbers.push_back(x11::eventAs<xcb_client_message_event_t>(event).data.data32[0]);
        }
    }

    [[nodiscard]] static std::vector<std::uint32_t> numbersBelow(std::uint32_t end) {
        std::vector<std::uint32_t> numbers(end);
        std::iota(numbers.begin(), numbers.end(), 0);
        return numbers;
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    std::uint32_t sent_ = 0;
    Journal journal_;
    FakeLogSink log_{journal_};
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
    xcb_window_t window_ = connection_->newId();
    EventPump pump_{*connection_, log_};
};

TEST_F(EventPumpTest, AFloodLeavesTheRestOfTheLoopItsTurns) {
    std::vector<std::uint32_t> dispatched;
    std::optional<std::size_t> atTheTimersTurn;
    const auto timer =
        linux::timedSource([&] { atTheTimersTurn = atTheTimersTurn.value_or(dispatched.size()); });
    const auto token = pump_.addHandler([&](const auto& event) {
        append(dispatched, event);
        if (dispatched.size() == 1) {
            g_source_set_ready_time(timer.get(), 0);
        }
    });
    send(many);
    // Sleeps when there is nothing to do: what XCB holds must not be forgotten then.
    EXPECT_TRUE(runUntil([&] { return dispatched.size() == many; }));
    EXPECT_EQ(dispatched, numbersBelow(many));
    EXPECT_THAT(atTheTimersTurn, Optional(::testing::Le(2 * EventPump::mostOfOneRound)));
}

TEST_F(EventPumpTest, OneDrainIsOneRound) {
    std::vector<std::uint32_t> dispatched;
    const auto token = pump_.addHandler([&](const auto& event) { append(dispatched, event); });
    send(EventPump::mostOfOneRound + 1);
    EXPECT_FALSE(pump_.drain());
    EXPECT_EQ(dispatched, numbersBelow(EventPump::mostOfOneRound));
    EXPECT_TRUE(pump_.drain());
    EXPECT_EQ(dispatched, numbersBelow(EventPump::mostOfOneRound + 1));
    EXPECT_TRUE(pump_.drain());
}

TEST_F(EventPumpTest, AWaitSeesMoreThanOneRoundAndEndsInTime) {
    std::vector<std::uint32_t> dispatched;
    const auto token = pump_.addHandler([&](const auto& event) { append(dispatched, event); });
    send(many);
    EXPECT_TRUE(pump_.waitUntil([&] { return dispatched.size() == many; }, patience));
    EXPECT_FALSE(
        pump_.waitUntil([&] { return dispatched.size() > many; }, std::chrono::milliseconds(20)));
}

TEST_F(EventPumpTest, AWaitSeesWhatItsConditionHasRead) {
    std::vector<std::uint32_t> dispatched;
    const auto token = pump_.addHandler([&](const auto& event) { append(dispatched, event); });
    // The answer brings the message along, and nothing wakes the descriptor for it any more.
    const auto ask = [&] {
        if (sent_ == 0) {
            send(1);
            const x11::Owned<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
                connection_->get(), xcb_get_input_focus(connection_->get()), nullptr));
        }
        return !dispatched.empty();
    };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(pump_.waitUntil(ask, patience));
    EXPECT_LT(std::chrono::steady_clock::now() - start, patience / 2);
}

TEST_F(EventPumpTest, WhatIsFetchedIsHeardAtOnceAndDispatchedInItsTurn) {
    std::vector<std::uint32_t> early;
    std::vector<std::uint32_t> dispatched;
    const auto earlyToken = pump_.addEarlyHandler([&](const auto& event) { append(early, event); });
    const auto token = pump_.addHandler([&](const auto& event) { append(dispatched, event); });
    send(2);
    EXPECT_TRUE(pump_.fetch());
    EXPECT_THAT(early, ElementsAre(0, 1));
    EXPECT_THAT(dispatched, IsEmpty());
    send(1);
    EXPECT_TRUE(pump_.drain());
    EXPECT_THAT(early, ElementsAre(0, 1, 2));
    EXPECT_THAT(dispatched, ElementsAre(0, 1, 2));
}

TEST_F(EventPumpTest, FetchesNoMoreThanARoundAtOnce) {
    std::vector<std::uint32_t> early;
    const auto token = pump_.addEarlyHandler([&](const auto& event) { append(early, event); });
    send(EventPump::mostOfOneRound + 1);
    EXPECT_FALSE(pump_.fetch());
    EXPECT_EQ(early, numbersBelow(EventPump::mostOfOneRound));
    EXPECT_TRUE(pump_.fetch());
    EXPECT_EQ(early, numbersBelow(EventPump::mostOfOneRound + 1));
}

} // namespace

} // namespace pelistra::testing
