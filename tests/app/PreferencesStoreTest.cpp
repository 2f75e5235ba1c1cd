#include "app/PreferencesStore.h"

#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeUserDefaults.h"

#include <gtest/gtest.h>

namespace pelistra {
namespace {

class PreferencesStoreTest : public ::testing::Test {
protected:
    [[nodiscard]] bool completed() const {
        return store_.defaults().boolForKey(store_.onboardingCompletedKey());
    }

    testing::Journal journal_;
    testing::FakeApplication application_{journal_};
    testing::FakeUserDefaults defaults_{journal_};
    PreferencesStore store_{defaults_, application_};
};

TEST_F(PreferencesStoreTest, TheKeyEndsInTheVersion) {
    application_.info["CFBundleShortVersionString"] = "1.4.2";

    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding.1.4.2");
}

TEST_F(PreferencesStoreTest, NothingIsTrimmedFromTheVersion) {
    application_.info["CFBundleShortVersionString"] = " 2 ";

    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding. 2 ");
}

TEST_F(PreferencesStoreTest, AnEmptyVersionIsAVersion) {
    application_.info["CFBundleShortVersionString"] = "";

    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding.");
}

TEST_F(PreferencesStoreTest, WithoutAVersionTheKeySaysUnknown) {
    application_.info.clear();

    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding.unknown");
}

TEST_F(PreferencesStoreTest, TheKeyIsComputedAtEveryRead) {
    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding.1.4.2");
    application_.info["CFBundleShortVersionString"] = "1.5";

    EXPECT_EQ(store_.onboardingCompletedKey(), "hasCompletedOnboarding.1.5");
}

TEST_F(PreferencesStoreTest, KeepsTheGivenDatabase) {
    EXPECT_EQ(&store_.defaults(), &defaults_);
}

TEST_F(PreferencesStoreTest, AnAbsentFlagReadsAsFalse) {
    EXPECT_FALSE(completed());
}

TEST_F(PreferencesStoreTest, BuildsOfOneVersionShareTheFlag) {
    store_.defaults().setBool(true, store_.onboardingCompletedKey());
    const PreferencesStore other(defaults_, application_);

    EXPECT_TRUE(other.defaults().boolForKey(other.onboardingCompletedKey()));
}

TEST_F(PreferencesStoreTest, ANewVersionStartsWithoutTheFlagAndKeepsTheOldOne) {
    store_.defaults().setBool(true, store_.onboardingCompletedKey());
    application_.info["CFBundleShortVersionString"] = "1.5";

    EXPECT_FALSE(completed());
    EXPECT_TRUE(defaults_.boolForKey("hasCompletedOnboarding.1.4.2"));
}

} // namespace
} // namespace pelistra
