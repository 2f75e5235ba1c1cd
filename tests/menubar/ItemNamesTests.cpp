#include "menubar/ItemNames.h"

#include "menubar/OrderMemory.h"

#include <string_view>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::namesOf;
using x11::PropertyValue;

PropertyValue text(std::string_view bytes) {
    return {.type = 31, .format = 8, .bytes = {bytes.begin(), bytes.end()}};
}

TEST(ItemNamesTests, AreTheTwoTextsOfTheWindowClass) {
    const auto names = namesOf(text({"mixer\0Mixer\0", 12}), text("40 %"));
    EXPECT_EQ(names.instance, "mixer");
    EXPECT_EQ(names.className, "Mixer");
}

TEST(ItemNamesTests, AWindowWithoutAClassIsKnownByItsTitle) {
    for (const auto& nothing : {std::optional<PropertyValue>(), std::optional(text("")),
                                std::optional(text({"\0\0", 2})), std::optional(text("\n\t"))}) {
        EXPECT_EQ(namesOf(nothing, text("Title")).instance, "Title");
        EXPECT_EQ(namesOf(nothing, text("Title")).className, "");
        EXPECT_EQ(namesOf(nothing, std::nullopt).instance, "");
    }
}

TEST(ItemNamesTests, HoldNothingThatCouldStartALineOrEndAField) {
    const auto names = namesOf(text({"a\tb\nc\0d\x1b[2J\r\0", 13}), std::nullopt);
    EXPECT_EQ(names.instance, "abc");
    EXPECT_EQ(names.className, "d[2J");
}

TEST(ItemNamesTests, AreCut) {
    const std::string large(60'000, 'x');
    EXPECT_EQ(namesOf(text(large), std::nullopt).instance,
              std::string(menubar::identityCharacterLimit, 'x'));
}

TEST(ItemNamesTests, NumbersAreNoNames) {
    auto numbers = text("abcdefgh");
    numbers.format = 32;
    EXPECT_EQ(namesOf(numbers, numbers).instance, "");
}

} // namespace
} // namespace pelistra::testing
