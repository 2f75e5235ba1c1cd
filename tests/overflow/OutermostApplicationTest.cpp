#include "overflow/OutermostApplication.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace pelistra::testing {
namespace {

// "none" where there is no application.
std::string outermost(const std::string& path) {
    return outermostApplicationURL(FileUrl{.path = path}).value_or(FileUrl{.path = "none"}).path;
}

TEST(OutermostApplicationTest, AbsentGivesAbsent) {
    EXPECT_EQ(outermostApplicationURL(std::nullopt), std::nullopt);
}

TEST(OutermostApplicationTest, RootAndPathsWithoutApplicationGiveAbsent) {
    EXPECT_EQ(outermost("/"), "none");
    EXPECT_EQ(outermost("//"), "none");
    EXPECT_EQ(outermost("/."), "none");
    EXPECT_EQ(outermost("/usr/local/bin/tool"), "none");
    EXPECT_EQ(outermost("/Applications"), "none");
}

TEST(OutermostApplicationTest, TheUrlItselfCounts) {
    EXPECT_EQ(outermost("/Applications/Foo.app"), "/Applications/Foo.app");
    EXPECT_EQ(outermost("/Foo.app"), "/Foo.app");
}

TEST(OutermostApplicationTest, TheComponentNearestTheRootWins) {
    EXPECT_EQ(outermost("/Applications/Foo.app/Contents/Library/LoginItems/Helper.app"),
              "/Applications/Foo.app");
    EXPECT_EQ(outermost("/A.app/B.app/C.app/tool"), "/A.app");
    EXPECT_EQ(outermost("/Applications/Foo.app/Contents/MacOS/foo"), "/Applications/Foo.app");
}

TEST(OutermostApplicationTest, CaseOfTheExtensionIsIgnored) {
    EXPECT_EQ(outermost("/Applications/Foo.APP/Contents/MacOS/foo"), "/Applications/Foo.APP");
    EXPECT_EQ(outermost("/Applications/Foo.aPp"), "/Applications/Foo.aPp");
}

TEST(OutermostApplicationTest, OnlyTheExtensionCounts) {
    EXPECT_EQ(outermost("/Foo.apps/bar"), "none");
    EXPECT_EQ(outermost("/app/bar"), "none");
    EXPECT_EQ(outermost("/Foo.app.old/bar"), "none");
    EXPECT_EQ(outermost("/Foo.app./bar"), "none");
    EXPECT_EQ(outermost("/Foo.ap/p"), "none");
    EXPECT_EQ(outermost("/Foo.bar.app"), "/Foo.bar.app");
    EXPECT_EQ(outermost("/Foo..app"), "/Foo..app");
    // Names that only begin with dots have no extension.
    EXPECT_EQ(outermost("/.app/bar"), "none");
    EXPECT_EQ(outermost("/..app/bar"), "none");
    EXPECT_EQ(outermost("/.Foo.app/bar"), "/.Foo.app");
}

TEST(OutermostApplicationTest, ThePathIsStandardised) {
    EXPECT_EQ(outermost("/Applications/Foo.app/"), "/Applications/Foo.app");
    EXPECT_EQ(outermost("//Applications///Foo.app//Contents"), "/Applications/Foo.app");
    EXPECT_EQ(outermost("/Applications/./Foo.app/."), "/Applications/Foo.app");
    EXPECT_EQ(outermost("/Applications/Bar.app/../Foo.app"), "/Applications/Foo.app");
    EXPECT_EQ(outermost("/Applications/Foo.app/.."), "none");
    EXPECT_EQ(outermost("/Applications/Foo.app/Contents/../../x"), "none");
    EXPECT_EQ(outermost("/../../Foo.app"), "/Foo.app");
    EXPECT_EQ(outermost("/a/../../b/Foo.app"), "/b/Foo.app");
}

TEST(OutermostApplicationTest, PathsThatAreNotAbsoluteGiveAbsent) {
    EXPECT_EQ(outermost(""), "none");
    EXPECT_EQ(outermost("Foo.app"), "none");
    EXPECT_EQ(outermost("../Foo.app"), "none");
}

TEST(OutermostApplicationTest, ForeignNamesPassUnchanged) {
    EXPECT_EQ(outermost("/Programme/日本語 \xff.app/x"), "/Programme/日本語 \xff.app");
    EXPECT_EQ(outermost("/a b%20c/Foo.app"), "/a b%20c/Foo.app");
    const std::string name(1024UL * 1024, 'n');
    EXPECT_EQ(outermost("/" + name + ".app/x"), "/" + name + ".app");
}

} // namespace
} // namespace pelistra::testing
