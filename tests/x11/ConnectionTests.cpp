#include "platform/x11/Connection.h"

#include "platform/x11/Properties.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/WaitFor.h"

#include <array>
#include <chrono>

#include <csignal>

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcbext.h>

namespace pelistra::testing {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds shortly{200};
// What a busy machine may add.
constexpr milliseconds leeway{5000};

// A question that the server answers, whatever it is about.
bool isAnswered(const x11::Connection& connection) {
    const auto geometry = connection.take<xcb_get_geometry_reply_t>(
        xcb_get_geometry(connection.get(), connection.root()));
    return geometry != nullptr;
}

milliseconds timeOf(const auto& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::ceil<milliseconds>(std::chrono::steady_clock::now() - begin);
}

class ConnectionTest : public ::testing::Test {
protected:
    void stopServer() const { ::kill(display_.serverPid(), SIGSTOP); }
    void continueServer() const { ::kill(display_.serverPid(), SIGCONT); }

    PrivateDisplay display_;
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
};

TEST_F(ConnectionTest, WaitsForAnAnswerNoLongerThanItsPatience) {
    ASSERT_TRUE(isAnswered(*connection_));
    stopServer();
    connection_->setPatience(shortly);
    const auto time = timeOf([&] { EXPECT_FALSE(isAnswered(*connection_)); });
    EXPECT_GE(time, shortly);
    EXPECT_LT(time, shortly + leeway);
    EXPECT_TRUE(connection_->isStalled());
    EXPECT_EQ(connection_->unanswered(), 1U);
    connection_->setPatience(x11::Connection::startPatience);
    // Behind an answer that does not come there is none to be had.
    EXPECT_LT(timeOf([&] {
                  EXPECT_FALSE(isAnswered(*connection_));
                  EXPECT_FALSE(connection_->sync());
              }),
              leeway);
    EXPECT_FALSE(connection_->hasRecovered());
    continueServer();
    EXPECT_TRUE(waitFor([&] { return connection_->hasRecovered(); }));
    EXPECT_FALSE(connection_->hasRecovered()) << "it is said once";
    EXPECT_FALSE(connection_->isStalled());
    EXPECT_TRUE(isAnswered(*connection_));
    EXPECT_EQ(connection_->unanswered(), 3U);
}

TEST_F(ConnectionTest, EndsAWaitWhenTheProgramIsToldToStop) {
    const int stop = ::eventfd(1, EFD_CLOEXEC);
    connection_->setPatience(x11::Connection::startPatience, stop);
    stopServer();
    EXPECT_LT(timeOf([&] { EXPECT_FALSE(isAnswered(*connection_)); }), leeway);
    ::close(stop);
    continueServer();
}

TEST_F(ConnectionTest, SaysWhetherTheServerHasAcceptedARequest) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto select = [&](xcb_window_t window) {
        return xcb_change_window_attributes_checked(connection_->get(), window, XCB_CW_EVENT_MASK,
                                                    &mask);
    };
    EXPECT_TRUE(connection_->hasAccepted(select(connection_->root())));
    EXPECT_FALSE(connection_->hasAccepted(select(connection_->newId())));
    connection_->setPatience(shortly);
    stopServer();
    EXPECT_FALSE(connection_->hasAccepted(select(connection_->root())));
    continueServer();
}

TEST_F(ConnectionTest, FindsExtensions) {
    // Every server has this one, whatever it is good for.
    static xcb_extension_t present{.name = "BIG-REQUESTS", .global_id = 0};
    static xcb_extension_t absent{.name = "NO-SUCH-EXTENSION", .global_id = 0};
    stopServer();
    connection_->setPatience(shortly);
    EXPECT_EQ(connection_->extension(present), nullptr) << "nobody can know it";
    continueServer();
    ASSERT_TRUE(waitFor([&] { return connection_->hasRecovered(); }));
    connection_->setPatience(x11::Connection::startPatience);
    const auto* const data = connection_->extension(present);
    ASSERT_NE(data, nullptr);
    EXPECT_NE(data->major_opcode, 0);
    EXPECT_EQ(connection_->extension(absent), nullptr);
}

TEST_F(ConnectionTest, ReadsNoPropertyFromAServerThatDoesNotAnswer) {
    stopServer();
    connection_->setPatience(shortly);
    EXPECT_LT(timeOf([&] {
                  EXPECT_FALSE(x11::readProperty(
                      *connection_, x11::requestProperty(*connection_, connection_->root(),
                                                         XCB_ATOM_RESOURCE_MANAGER)));
              }),
              leeway);
    continueServer();
}

} // namespace

} // namespace pelistra::testing
