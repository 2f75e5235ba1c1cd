#include "menubar/DockRequest.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::requestedDock;

constexpr xcb_window_t owner = 0x200001;
constexpr xcb_window_t client = 0x400007;
constexpr xcb_atom_t opcode = 123;

xcb_client_message_event_t request() {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = owner;
    message.type = opcode;
    message.data.data32[2] = client;
    return message;
}

TEST(DockRequestTests, NamesTheWindow) {
    EXPECT_EQ(requestedDock(request(), owner, opcode), client);
}

TEST(DockRequestTests, AnythingElseIsNoRequest) {
    auto message = request();
    message.window = client;
    EXPECT_EQ(requestedDock(message, owner, opcode), std::nullopt) << "for another window";
    message = request();
    message.type = opcode + 1;
    EXPECT_EQ(requestedDock(message, owner, opcode), std::nullopt) << "another message";
    message = request();
    message.format = 8;
    EXPECT_EQ(requestedDock(message, owner, opcode), std::nullopt) << "no words";
    message = request();
    message.data.data32[2] = XCB_NONE;
    EXPECT_EQ(requestedDock(message, owner, opcode), std::nullopt) << "no window";
    // Balloon messages begin and end with these.
    for (const std::uint32_t other : {1U, 2U, 0xFFFFFFFFU}) {
        message = request();
        message.data.data32[1] = other;
        EXPECT_EQ(requestedDock(message, owner, opcode), std::nullopt) << other;
    }
}

} // namespace
} // namespace pelistra::testing
