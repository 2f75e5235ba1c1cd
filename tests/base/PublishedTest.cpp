#include "base/Published.h"

#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace pelistra {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PublishedTest, StartsWithItsInitialValue) {
    EXPECT_EQ(Published<int>(7).get(), 7);
    EXPECT_EQ(Published<int>().get(), 0);
}

TEST(PublishedTest, AnObserverIsToldBeforeTheAssignmentTakesEffect) {
    Published<int> property(1);
    std::vector<int> seen;
    const auto token = property.observe([&](const int& newValue) {
        seen.push_back(property.get());
        seen.push_back(newValue);
    });

    property.set(2);

    EXPECT_THAT(seen, ElementsAre(1, 2));
    EXPECT_EQ(property.get(), 2);
}

TEST(PublishedTest, AnEqualValueIsPublishedToo) {
    Published<int> property(1);
    int publications = 0;
    const auto token = property.observe([&](int) { ++publications; });

    property.set(1);

    EXPECT_EQ(publications, 1);
}

TEST(PublishedTest, AChangeInPlaceIsOnePublicationOfTheWholeValue) {
    Published<std::vector<int>> property(std::vector<int>{1, 2});
    std::vector<std::vector<int>> published;
    const auto token =
        property.observe([&](const std::vector<int>& value) { published.push_back(value); });

    property.mutate([](std::vector<int>& value) {
        value[0] = 5;
        value.push_back(3);
    });

    EXPECT_THAT(published, ElementsAre(ElementsAre(5, 2, 3)));
    EXPECT_THAT(property.get(), ElementsAre(5, 2, 3));
}

TEST(PublishedTest, ObserversAreToldInTheOrderOfTheirComing) {
    Published<int> property;
    std::vector<int> told;
    const auto first = property.observe([&](int) { told.push_back(1); });
    const auto second = property.observe([&](int) { told.push_back(2); });

    property.set(9);

    EXPECT_THAT(told, ElementsAre(1, 2));
}

TEST(PublishedTest, NothingIsToldAfterTheTokenDied) {
    Published<int> property;
    std::vector<int> told;
    auto token = property.observe([&](int value) { told.push_back(value); });
    token.reset();

    property.set(1);

    EXPECT_THAT(told, IsEmpty());
}

TEST(PublishedTest, AnObserverMayLeaveWhileItIsTold) {
    Published<int> property;
    std::vector<int> told;
    SubscriptionPtr token;
    token = property.observe([&](int value) {
        told.push_back(value);
        token.reset();
    });

    property.set(1);
    property.set(2);

    EXPECT_THAT(told, ElementsAre(1));
}

TEST(PublishedTest, AnObserverThatAnEarlierOneTookAwayIsNotTold) {
    Published<int> property;
    std::vector<int> told;
    SubscriptionPtr second;
    const auto first = property.observe([&](int) { second.reset(); });
    second = property.observe([&](int value) { told.push_back(value); });

    property.set(1);

    EXPECT_THAT(told, IsEmpty());
}

TEST(PublishedTest, ATokenMayOutliveTheProperty) {
    std::optional<Published<int>> property(std::in_place, 1);
    int publications = 0;
    auto token = property->observe([&](int) { ++publications; });
    property->set(2);
    property.reset();

    token.reset();

    EXPECT_EQ(publications, 1);
}

} // namespace
} // namespace pelistra
