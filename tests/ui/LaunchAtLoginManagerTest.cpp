#include "ui/LaunchAtLoginManager.h"

#include "tests/platform/FakeLoginItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LaunchAtLoginManagerTest : public ::testing::Test {
protected:
    Journal journal_;
    FakeLoginItem loginItem_{journal_};
};

TEST_F(LaunchAtLoginManagerTest, StartsWithWhatTheSystemSaysAndChangesNothing) {
    const LaunchAtLoginManager off(loginItem_);
    EXPECT_FALSE(off.isEnabled.get());
    EXPECT_EQ(off.errorMessage.get(), std::nullopt);

    loginItem_.current = LoginItemStatus::Enabled;
    const LaunchAtLoginManager on(loginItem_);
    EXPECT_TRUE(on.isEnabled.get());
    EXPECT_THAT(journal_.entries(), IsEmpty());
}

TEST_F(LaunchAtLoginManagerTest, OnlyTheEnabledStatusIsOn) {
    for (const auto status : {LoginItemStatus::NotRegistered, LoginItemStatus::RequiresApproval,
                              LoginItemStatus::NotFound}) {
        loginItem_.current = status;
        EXPECT_FALSE(LaunchAtLoginManager(loginItem_).isEnabled.get());
    }
}

TEST_F(LaunchAtLoginManagerTest, TurningOnRegistersAndTurningOffUnregisters) {
    LaunchAtLoginManager manager(loginItem_);
    manager.setEnabled(true);
    EXPECT_TRUE(manager.isEnabled.get());
    manager.setEnabled(false);
    EXPECT_FALSE(manager.isEnabled.get());
    EXPECT_THAT(journal_.entries(), ElementsAre("loginItem.register", "loginItem.unregister"));
}

TEST_F(LaunchAtLoginManagerTest, ARefusalKeepsTheSystemsTextAndTheTrueState) {
    LaunchAtLoginManager manager(loginItem_);
    loginItem_.refusal = "Operation not permitted";
    manager.setEnabled(true);
    EXPECT_EQ(manager.errorMessage.get(), "Operation not permitted");
    EXPECT_FALSE(manager.isEnabled.get());

    loginItem_.current = LoginItemStatus::Enabled;
    manager.setEnabled(false);
    EXPECT_EQ(manager.errorMessage.get(), "Operation not permitted");
    EXPECT_TRUE(manager.isEnabled.get());
}

TEST_F(LaunchAtLoginManagerTest, AnEmptyRefusalIsStillOne) {
    LaunchAtLoginManager manager(loginItem_);
    loginItem_.refusal = "";
    manager.setEnabled(true);
    EXPECT_EQ(manager.errorMessage.get(), "");
}

TEST_F(LaunchAtLoginManagerTest, ALaterSuccessEmptiesTheMessage) {
    LaunchAtLoginManager manager(loginItem_);
    loginItem_.refusal = "no";
    manager.setEnabled(true);
    loginItem_.refusal.reset();
    manager.setEnabled(true);
    EXPECT_EQ(manager.errorMessage.get(), std::nullopt);
    EXPECT_TRUE(manager.isEnabled.get());
}

TEST_F(LaunchAtLoginManagerTest, WaitingForApprovalReadsAsOffWithoutAnError) {
    LaunchAtLoginManager manager(loginItem_);
    loginItem_.statusWhenRegistered = LoginItemStatus::RequiresApproval;
    manager.setEnabled(true);
    EXPECT_FALSE(manager.isEnabled.get());
    EXPECT_EQ(manager.errorMessage.get(), std::nullopt);
}

TEST_F(LaunchAtLoginManagerTest, TheMessageIsPublishedBeforeTheState) {
    LaunchAtLoginManager manager(loginItem_);
    std::vector<std::string> order;
    const auto message =
        manager.errorMessage.observe([&](const auto&) { order.emplace_back("message"); });
    const auto state =
        manager.isEnabled.observe([&](bool on) { order.emplace_back(on ? "on" : "off"); });
    manager.setEnabled(true);
    EXPECT_THAT(order, ElementsAre("message", "on"));
}

TEST_F(LaunchAtLoginManagerTest, AChangeMadeElsewhereIsSeenAtTheNextSetting) {
    LaunchAtLoginManager manager(loginItem_);
    loginItem_.current = LoginItemStatus::Enabled;
    EXPECT_FALSE(manager.isEnabled.get());
    loginItem_.refusal = "no";
    manager.setEnabled(false);
    EXPECT_TRUE(manager.isEnabled.get());
}

} // namespace
} // namespace pelistra::testing
