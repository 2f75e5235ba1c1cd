#include "platform/x11/PublishedItems.h"

#include <string_view>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::Optional;
using x11::PropertyValue;
using x11::PublishedItem;
using x11::publishedItemsIn;
using x11::publishedText;

PropertyValue property(std::string_view bytes) {
    return {.type = 1, .format = x11::bitsOfByte, .bytes = {bytes.begin(), bytes.end()}};
}

// The property with one item at that place.
PropertyValue withPlace(const std::string& place) {
    using namespace std::string_literals;
    return property(place + "\0title\0instance\0class\0"s);
}

TEST(PublishedItemsTests, WhatIsPublishedIsReadBack) {
    const std::vector<PublishedItem> items{{.window = 0xffffffff,
                                            .x = -32767,
                                            .y = 0,
                                            .width = 28,
                                            .height = 28,
                                            .title = "a title, 中文\n",
                                            .instance = "",
                                            .className = "Class",
                                            .process = {}},
                                           {.window = 1,
                                            .x = 1892,
                                            .y = 400,
                                            .width = 65535,
                                            .height = 0,
                                            .title = {},
                                            .instance = {},
                                            .className = {},
                                            .process = 4711}};
    const auto text = publishedText(items);
    ASSERT_TRUE(text.has_value());
    EXPECT_THAT(publishedItemsIn(property(*text)), Optional(items));
}

TEST(PublishedItemsTests, TheFormIsTheOneThatIsPromised) {
    using namespace std::string_literals;
    const std::vector<PublishedItem> items{{.window = 10485763,
                                            .x = 1892,
                                            .y = 0,
                                            .width = 28,
                                            .height = 28,
                                            .title = "title",
                                            .instance = "instance",
                                            .className = "Class",
                                            .process = {}}};
    EXPECT_EQ(publishedText(items), "10485763 1892 0 28 28\0title\0instance\0Class\0"s);
}

TEST(PublishedItemsTests, NoItemsAreNoText) {
    EXPECT_EQ(publishedText({}), "");
    EXPECT_THAT(publishedItemsIn(property("")), Optional(IsEmpty()));
}

TEST(PublishedItemsTests, ATextThatIsTooLongIsNotPublished) {
    std::vector<PublishedItem> items(1);
    const std::size_t rest = publishedText(items)->size();
    items[0].title = std::string(x11::publishedItemsByteLimit - rest, 't');
    EXPECT_TRUE(publishedText(items).has_value());
    items[0].title += 't';
    EXPECT_EQ(publishedText(items), std::nullopt);
}

TEST(PublishedItemsTests, AnotherFormatIsNotUnderstood) {
    EXPECT_EQ(publishedItemsIn({.type = 1, .format = x11::bitsOfWord, .bytes = {}}), std::nullopt);
    EXPECT_EQ(publishedItemsIn({.type = 1, .format = x11::bitsOfWord, .bytes = {1, 2, 3, 4}}),
              std::nullopt);
}

TEST(PublishedItemsTests, AnIncompleteItemIsNotUnderstood) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(publishedItemsIn(property("1 2 3 4 5\0t\0i\0c\0"sv)).has_value());
    for (const std::string_view bytes :
         {"1 2 3 4 5\0t\0i\0"sv, "1 2 3 4 5"sv, "\0"sv, "1 2 3 4 5\0t\0i\0c\0t"sv, "\0\0\0\0"sv}) {
        EXPECT_EQ(publishedItemsIn(property(bytes)), std::nullopt) << bytes;
    }
}

TEST(PublishedItemsTests, AWindowStandsThereOnce) {
    std::vector<PublishedItem> items(2);
    items[0].window = items[1].window = 7;
    EXPECT_EQ(publishedItemsIn(property(publishedText(items).value())), std::nullopt);
}

TEST(PublishedItemsTests, PlacesAreNumbersThatAWindowAndAProcessCanHave) {
    for (const char* place : {"1 0 0 0 0", "4294967295 -1048576 1048576 65535 65535", "1 2 3 4 5 0",
                              "1 2 3 4 5 2147483647"}) {
        EXPECT_TRUE(publishedItemsIn(withPlace(place)).has_value()) << place;
    }
    for (const char* place : {"",
                              "1",
                              "1 2 3 4",
                              "1 2 3 4 ",
                              "1 2 3 4 5 ",
                              " 1 2 3 4 5",
                              "1 2 3 4 5 6 7",
                              "1 2 3 4 5 6 ",
                              "1 2 3 4 5 -1",
                              "1 2 3 4 5 2147483648",
                              "1  2 3 4 5",
                              "1,2,3,4,5",
                              "1 2 3 4 x",
                              "0x1 2 3 4 5",
                              "1 2 3 4 5x",
                              "0 2 3 4 5",
                              "-1 2 3 4 5",
                              "4294967296 2 3 4 5",
                              "1 -1048577 3 4 5",
                              "1 2 1048577 4 5",
                              "1 2 3 -1 5",
                              "1 2 3 4 65536",
                              "1 2 3 99999999999999999999 5"}) {
        EXPECT_EQ(publishedItemsIn(withPlace(place)), std::nullopt) << place;
    }
}

} // namespace
} // namespace pelistra::testing
