#pragma once

#include "platform/LoginItem.h"

#include <gtest/gtest.h>

namespace pelistra::testing {

// What every registration to start at login promises. Backend:
//   LoginItem& item();                     not registered at first
//   LoginItem& another();                  the same application's registration, asked through
//   another object void refuse();                         the system refuses every change from now
//   on
template <class Backend>
class LoginItemContract : public ::testing::Test {
protected:
    Backend backend_;
};

TYPED_TEST_SUITE_P(LoginItemContract);

TYPED_TEST_P(LoginItemContract, TheRegistrationIsTheOnlyTruth) {
    EXPECT_NE(this->backend_.item().status(), LoginItemStatus::Enabled);
    EXPECT_EQ(this->backend_.item().registerItem(), std::nullopt);
    EXPECT_EQ(this->backend_.item().status(), LoginItemStatus::Enabled);
    EXPECT_EQ(this->backend_.another().status(), LoginItemStatus::Enabled);
    EXPECT_EQ(this->backend_.another().unregisterItem(), std::nullopt);
    EXPECT_NE(this->backend_.item().status(), LoginItemStatus::Enabled);
}

TYPED_TEST_P(LoginItemContract, ARefusalIsToldAndChangesNothing) {
    this->backend_.refuse();
    EXPECT_NE(this->backend_.item().registerItem(), std::nullopt);
    EXPECT_NE(this->backend_.item().status(), LoginItemStatus::Enabled);
}

REGISTER_TYPED_TEST_SUITE_P(LoginItemContract, TheRegistrationIsTheOnlyTruth,
                            ARefusalIsToldAndChangesNothing);

} // namespace pelistra::testing
