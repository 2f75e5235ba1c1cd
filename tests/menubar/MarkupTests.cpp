#include "menubar/notifier/Markup.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

std::string plain(std::string_view markup) {
    return menubar::plainText(markup, 100, 5);
}

TEST(MarkupTests, TagsGoAndThoseOfLinesBreakTheLine) {
    EXPECT_EQ(plain("<b>bold</b> and <font color='red'>red</font>"), "bold and red");
    EXPECT_EQ(plain("one<br>two<BR/>three<p>four</p>"), "one\ntwo\nthree\nfour");
    EXPECT_EQ(plain("<!-- no --><qt>text</qt>"), "text");
}

TEST(MarkupTests, ReferencesBecomeWhatTheyStandFor) {
    EXPECT_EQ(plain("a &amp; b &lt;c&gt; &quot;d&quot; &#20013;&#x6587;"), "a & b <c> \"d\" 中文");
    EXPECT_EQ(plain("&unknown; &#xD800; &#99999999; &#; &"),
              "&unknown; &#xD800; &#99999999; &#; &");
    // What they stand for is cleaned like the rest.
    EXPECT_EQ(plain("a&#x202E;b&#7;c"), "abc");
}

TEST(MarkupTests, WhatIsNoMarkupStays) {
    EXPECT_EQ(plain("3 < 4 > 2, a<b and Q&A"), "3 < 4 > 2, a<b and Q&A");
    EXPECT_EQ(plain("one\n\n \ntwo"), "one\ntwo");
    EXPECT_EQ(plain(""), "");
}

TEST(MarkupTests, LinesAndTheirLengthAreBounded) {
    EXPECT_EQ(plain(std::string(1'000'000, 'x')), std::string(100, 'x'));
    EXPECT_EQ(plain("1<br>2<br>3<br>4<br>5<br>6"), "1\n2\n3\n4\n5");
    EXPECT_EQ(plain(std::string(1'000'000, '<')), std::string(100, '<'));
}

} // namespace
} // namespace pelistra::testing
