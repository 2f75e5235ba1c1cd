#include "platform/linux/DefaultsText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using desktop::DefaultsText;
using desktop::DefaultsValue;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(DefaultsText, ReadsEachTypeByItsLiteral) {
    const DefaultsText text(R"("flag" = true
"other flag" = false
"whole" = 3
"negative" = -2.5
"large" = 1e300
"words" = "one \"two\" \\ three\nfour\tfive"
)");
    EXPECT_THAT(text.value("flag"), Optional(DefaultsValue(true)));
    EXPECT_THAT(text.value("other flag"), Optional(DefaultsValue(false)));
    EXPECT_THAT(text.value("whole"), Optional(DefaultsValue(3.0)));
    EXPECT_THAT(text.value("negative"), Optional(DefaultsValue(-2.5)));
    EXPECT_THAT(text.value("large"), Optional(DefaultsValue(1e300)));
    EXPECT_THAT(text.value("words"),
                Optional(DefaultsValue(std::string("one \"two\" \\ three\nfour\tfive"))));
    EXPECT_EQ(text.value("absent"), std::nullopt);
    EXPECT_THAT(text.damagedLines(), IsEmpty());
}

TEST(DefaultsText, AValueComesBackAsItWasSet) {
    const std::vector<DefaultsValue> values{
        true, false, 0.0, -0.1, 1.0 / 3, 5e-324, std::string(), std::string("a\\\"b\n\t隐藏")};
    for (const auto& value : values) {
        DefaultsText text;
        text.setValue("a key with \"quotes\"", value);
        EXPECT_THAT(DefaultsText(text.text()).value("a key with \"quotes\""), Optional(value));
    }
}

TEST(DefaultsText, SpacesAroundThePartsDoNotMatter) {
    EXPECT_THAT(DefaultsText("  \"a\"=1").value("a"), Optional(DefaultsValue(1.0)));
    EXPECT_THAT(DefaultsText("\t\"a\"\t =  true \r\n").value("a"), Optional(DefaultsValue(true)));
}

TEST(DefaultsText, TheLaterOfTwoLinesHoldsAndIsChanged) {
    DefaultsText text("\"a\" = 1\n\"a\" = 2\n");
    EXPECT_THAT(text.value("a"), Optional(DefaultsValue(2.0)));
    text.setValue("a", 3.0);
    EXPECT_EQ(text.text(), "\"a\" = 1\n\"a\" = 3\n");
}

TEST(DefaultsText, ADamagedLineCostsThatLineOnly) {
    const DefaultsText text("\"a\" = 1\n"
                            "garbage\n"
                            "\"b = 2\n"
                            "\"c\" 3\n"
                            "\"d\" = maybe\n"
                            "\"e\" = 1 2\n"
                            "\"f\" = \"unfinished\n"
                            "\"g\" = \"bad escape \\x\"\n"
                            "\"h\" = nan\n"
                            "\"i\" = inf\n"
                            "\"j\" =\n"
                            "\"k\" = \"text\" more\n"
                            "\"z\" = true\n");
    EXPECT_THAT(text.damagedLines(), ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
    EXPECT_THAT(text.value("a"), Optional(DefaultsValue(1.0)));
    EXPECT_THAT(text.value("z"), Optional(DefaultsValue(true)));
    for (const char* key : {"c", "d", "e", "f", "g", "h", "i", "j", "k"}) {
        EXPECT_EQ(text.value(key), std::nullopt) << key;
    }
}

TEST(DefaultsText, ChangingOneValueLosesNothingElse) {
    const std::string before = "# mine\n\n\"theirs\" = \"x\"\nnot understood\n\"a\" = 1\n";
    DefaultsText text(before);
    text.setValue("a", true);
    text.setValue("b", 7.0);
    EXPECT_EQ(text.text(),
              "# mine\n\n\"theirs\" = \"x\"\nnot understood\n\"a\" = true\n\"b\" = 7\n");
}

TEST(DefaultsText, ANumberThatIsNotFiniteIsIgnored) {
    DefaultsText text("\"a\" = 1\n");
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(DefaultsText::canHold(number));
        text.setValue("a", number);
        text.setValue("b", number);
        EXPECT_EQ(text.text(), "\"a\" = 1\n");
        EXPECT_THAT(text.value("a"), Optional(DefaultsValue(1.0)));
        EXPECT_EQ(text.value("b"), std::nullopt);
    }
    text.setValue("a", std::numeric_limits<double>::denorm_min());
    EXPECT_THAT(DefaultsText(text.text()).value("a"),
                Optional(DefaultsValue(std::numeric_limits<double>::denorm_min())));
}

TEST(DefaultsText, TakesAnyBytes) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    const DefaultsText text(bytes + "\n\"a\" = 1");
    EXPECT_THAT(text.value("a"), Optional(DefaultsValue(1.0)));
    EXPECT_EQ(text.text(), bytes + "\n\"a\" = 1\n");
}

} // namespace

} // namespace pelistra::testing
