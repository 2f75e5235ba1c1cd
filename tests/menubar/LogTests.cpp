#include "menubar/Log.h"

#include <string>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

std::string logged(std::string_view message) {
    ::testing::internal::CaptureStderr();
    menubar::log(message);
    return ::testing::internal::GetCapturedStderr();
}

TEST(LogTests, AMessageIsOneLine) {
    EXPECT_EQ(logged("there is no menu bar"), "pelistra-menubar: there is no menu bar\n");
    EXPECT_EQ(logged("/home/müller/菜单 is damaged"),
              "pelistra-menubar: /home/müller/菜单 is damaged\n");
}

TEST(LogTests, WhatItQuotesStartsNoLineAndSteersNoTerminal) {
    EXPECT_EQ(logged("'a\npelistra-menubar: forged\r\x1b[2J\xc2\x9b' went\u202e away"),
              "pelistra-menubar: 'apelistra-menubar: forged[2J' went away\n");
    EXPECT_EQ(logged("\xff"), "pelistra-menubar: \uFFFD\n");
}

} // namespace
} // namespace pelistra::testing
