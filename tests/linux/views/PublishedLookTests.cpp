#include "platform/linux/views/PublishedLook.h"

#include <gtest/gtest.h>

#include <string>

namespace pelistra::linux {
namespace {

TEST(PublishedLookTest, ADarkThemeMakesADarkLook) {
    EXPECT_TRUE(lookOf({{"Net/ThemeName", std::string("Adwaita-dark")}}).isDark);
    EXPECT_FALSE(lookOf({{"Net/ThemeName", std::string("Adwaita")}}).isDark);
    EXPECT_FALSE(lookOf({}).isDark);
}

TEST(PublishedLookTest, SwitchedOffAnimationsReduceMotion) {
    EXPECT_TRUE(lookOf({{"Gtk/EnableAnimations", 0}}).reduceMotion);
    EXPECT_FALSE(lookOf({{"Gtk/EnableAnimations", 1}}).reduceMotion);
    EXPECT_FALSE(lookOf({}).reduceMotion);
}

TEST(PublishedLookTest, TheDesktopsFontGivesFamilyAndBodySize) {
    const Look usual = lookOf({{"Gtk/FontName", std::string("Noto Sans 10")}});
    EXPECT_EQ(usual.fontFamily, "Noto Sans");
    EXPECT_DOUBLE_EQ(usual.bodySize, 13);
    EXPECT_DOUBLE_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans 14")}}).bodySize, 18.2);
    EXPECT_DOUBLE_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans 999")}}).bodySize, 22);
    EXPECT_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans")}}).fontFamily, "Noto Sans");
}

TEST(PublishedLookTest, AFontThatIsNoTextBecomesOne) {
    const Look look = lookOf({{"Gtk/FontName", std::string("No\nto\xff 1e9999")}});
    EXPECT_EQ(look.fontFamily, "No to\uFFFD 1e9999");
    EXPECT_DOUBLE_EQ(look.bodySize, 13);
    EXPECT_LE(lookOf({{"Gtk/FontName", std::string(60'000, 'x')}}).fontFamily.size(), 256U);
}

} // namespace
} // namespace pelistra::linux
