#include "platform/x11/Properties.h"

#include <string_view>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using x11::PropertyValue;

constexpr xcb_atom_t otherType = 300;

PropertyValue bytesOfType(xcb_atom_t type, std::string_view bytes) {
    return {.type = type, .format = x11::bitsOfByte, .bytes = {bytes.begin(), bytes.end()}};
}

TEST(PropertyValueTests, OnlyTextsOfTypeStringAreLatin) {
    EXPECT_EQ(bytesOfType(XCB_ATOM_STRING, "caf\xE9").utf8(), "café");
    EXPECT_EQ(bytesOfType(otherType, "café").utf8(), "café");
    EXPECT_EQ(bytesOfType(otherType, "caf\xE9").utf8(), "caf\xE9");
}

TEST(PropertyValueTests, AZeroByteEndsAText) {
    using namespace std::string_view_literals;
    const PropertyValue value = bytesOfType(otherType, "ab\0\0cd\0"sv);
    EXPECT_EQ(value.text(), "ab");
    EXPECT_EQ(value.utf8(), "ab");
    EXPECT_THAT(value.texts(), ElementsAre("ab", "", "cd"));
}

TEST(PropertyValueTests, WordsAreNoTextAndTextsAreNoWords) {
    const PropertyValue words{
        .type = XCB_ATOM_STRING, .format = x11::bitsOfWord, .bytes = {65, 0, 0, 0}};
    EXPECT_THAT(words.words(), ElementsAre(65));
    EXPECT_EQ(words.utf8(), "");
    EXPECT_THAT(words.texts(), IsEmpty());
    EXPECT_THAT(bytesOfType(XCB_ATOM_STRING, "abcd").words(), IsEmpty());
}

} // namespace
} // namespace pelistra::testing
