#pragma once

#include "platform/UserDefaults.h"

#include <gtest/gtest.h>

namespace pelistra::testing {

// What every database of user defaults promises. Backend:
//   UserDefaults& defaults();              begins without a value under the keys used here
//   void reopen();                         as the next start of the application finds it
template <class Backend>
class UserDefaultsContract : public ::testing::Test {
protected:
    [[nodiscard]] UserDefaults& defaults() { return backend_.defaults(); }

    Backend backend_;
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, WhatIsAbsentIsFalse) {
    EXPECT_FALSE(this->defaults().hasObject("contract absent"));
    EXPECT_FALSE(this->defaults().boolForKey("contract absent"));
}

TYPED_TEST_P(UserDefaultsContract, AFalseValueIsThere) {
    this->defaults().setBool(false, "contract flag");
    EXPECT_TRUE(this->defaults().hasObject("contract flag"));
    EXPECT_FALSE(this->defaults().boolForKey("contract flag"));
}

TYPED_TEST_P(UserDefaultsContract, ANumberIsTrueUnlessItIsZero) {
    for (const double number : {0.0, 1.0, 2.0, -1.0, 0.5}) {
        this->defaults().setNumber(number, "contract number");
        EXPECT_TRUE(this->defaults().hasObject("contract number"));
        EXPECT_EQ(this->defaults().boolForKey("contract number"), number != 0) << number;
    }
}

TYPED_TEST_P(UserDefaultsContract, AValueTakesThePlaceOfTheOneBefore) {
    this->defaults().setNumber(0, "contract value");
    this->defaults().setBool(true, "contract value");
    EXPECT_TRUE(this->defaults().boolForKey("contract value"));
    this->defaults().setNumber(0, "contract value");
    EXPECT_FALSE(this->defaults().boolForKey("contract value"));
}

TYPED_TEST_P(UserDefaultsContract, KeysWithSpacesAndOfAllLanguagesAreKept) {
    for (const char* key :
         {"NSStatusItem Visible contract", "hasCompletedOnboarding.1.4.2-contract", "合同",
          "contract=[x]#;\"\\"}) {
        this->defaults().setBool(true, key);
        this->backend_.reopen();
        EXPECT_TRUE(this->defaults().boolForKey(key)) << key;
    }
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, WhatIsAbsentIsFalse, AFalseValueIsThere,
                            ANumberIsTrueUnlessItIsZero, AValueTakesThePlaceOfTheOneBefore,
                            KeysWithSpacesAndOfAllLanguagesAreKept);

} // namespace pelistra::testing
