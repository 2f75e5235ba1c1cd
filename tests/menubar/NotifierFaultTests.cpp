// What goes wrong on the session bus: other watchers, a bus that dies, programs that misbehave.

#include "tests/menubar/NotifierFixture.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using Registration = NotifierClient::Registration;
using Answers = NotifierClient::Answers;

class NotifierFaultTests : public NotifierFixture {
protected:
    using NotifierFixture::NotifierFixture;

    [[nodiscard]] long barMemory() { return ownMemory(bar().process().pid()).value_or(0); }
    // What the bar may need more for what a program does to it, in KiB.
    static constexpr long memoryBound = 40'000;
};

TEST_F(NotifierFaultTests, BesideAnotherWatcherItShowsWhatIsThereAndTakesItsPlaceLater) {
    PrivateDisplay otherDisplay{{}};
    otherDisplay.setEnvironment("DBUS_SESSION_BUS_ADDRESS",
                                display_.environment().at("DBUS_SESSION_BUS_ADDRESS"));
    XClient otherX{otherDisplay.name()};
    auto other = std::make_unique<BarUnderTest>(otherDisplay, otherX);
    ASSERT_TRUE(waitForWatcher(display_.environment().at("DBUS_SESSION_BUS_ADDRESS")));
    NotifierClient& before = add(plain("before"));
    ASSERT_TRUE(eventually([&] { return otherX.barItem("before").has_value(); }));
    startBar();
    ASSERT_TRUE(shows({"before"}));
    add(plain("beside"));
    ASSERT_TRUE(shows({"beside", "before"}));
    EXPECT_TRUE(eventually([&] { return otherX.barItem("beside").has_value(); }));
    // No host of ours is missed by anybody while the other one lives.
    other->process().kill();
    add(plain("after"));
    EXPECT_TRUE(shows({"after", "beside", "before"}) || before.isRegistered());
    EXPECT_TRUE(shows({"after", "beside", "before"}));
}

TEST_F(NotifierFaultTests, ABusThatDiesCostsOneLineAndItsIconsUntilItIsBack) {
    allowComplaints(1);
    startBar();
    add(plain("first"));
    ASSERT_TRUE(shows({"first"}));
    display_.endSessionBus();
    ASSERT_TRUE(shows({}));
    endAll();
    dockNamed("window");
    ASSERT_TRUE(shows({"window"}));
    display_.startSessionBus();
    ASSERT_TRUE(waitForWatcher(display_.environment().at("DBUS_SESSION_BUS_ADDRESS")));
    add(plain("second"));
    EXPECT_TRUE(shows({"second", "window"}));
    EXPECT_THAT(bar().process().output(), HasSubstr("the session bus does not answer"));
}

TEST_F(NotifierFaultTests, WithoutABusIconsThatAreWindowsAreShownAndABusThatComesIsFound) {
    allowComplaints(1);
    display_.endSessionBus();
    BarFixture::startBar();
    dockNamed("window");
    ASSERT_TRUE(shows({"window"}));
    display_.startSessionBus();
    ASSERT_TRUE(waitForWatcher(display_.environment().at("DBUS_SESSION_BUS_ADDRESS")));
    add(plain("late"));
    EXPECT_TRUE(shows({"late", "window"}));
}

TEST_F(NotifierFaultTests, AThousandProgramsAreTakenAsFarAsThereIsRoom) {
    constexpr int most = 256;
    // How many were refused is said at most every ten seconds.
    allowComplaints(8);
    startBar();
    // Newer versions of sd-bus keep two descriptors for each connection.
    rlimit descriptors{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &descriptors), 0);
    descriptors.rlim_cur = descriptors.rlim_max;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &descriptors), 0);
    dockNamed("window");
    const long before = barMemory();
    for (int i = 0; i < 1'000; ++i) {
        add(plain("many" + std::to_string(i)));
    }
    EXPECT_TRUE(eventually([&] { return names().size() == most + 1; }));
    EXPECT_EQ(names().back(), "window");
    EXPECT_LT(barMemory() - before, 2 * memoryBound);
    endAll();
    EXPECT_TRUE(shows({"window"}));
    add(plain("good", blue));
    EXPECT_TRUE(isColored("good", blue));
}

TEST_F(NotifierFaultTests, OneProgramCannotFillTheBar) {
    allowComplaints(1);
    startBar();
    NotifierClient& client = add(plain("one"));
    ASSERT_TRUE(shows({"one"}));
    for (int i = 0; i < 1'000; ++i) {
        client.registerAs("/item" + std::to_string(i));
    }
    add(plain("good", blue));
    EXPECT_TRUE(isColored("good", blue));
    EXPECT_LE(names().size(), 33U);
}

TEST_F(NotifierFaultTests, ProgramsThatHangOrNeverStopTalkingHoldNobodyUp) {
    startBar();
    NotifierClient& talking = add(plain("talking"));
    ASSERT_TRUE(shows({"talking"}));
    auto options = plain("hanging");
    options.answers = Answers::Never;
    add(options);
    const int before = talking.questions();
    for (int i = 0; i < 20'000; ++i) {
        talking.change([](auto&) {}, "NewIcon");
    }
    const auto began = std::chrono::steady_clock::now();
    add(plain("good", blue));
    EXPECT_TRUE(isColored("good", blue));
    // 20 times a second at most.
    const auto passed = std::chrono::steady_clock::now() - began;
    constexpr std::chrono::milliseconds interval{50};
    EXPECT_LE(talking.questions() - before, 4 + passed / interval + 400);
    EXPECT_FALSE(x_.barItem("hanging").has_value());
}

TEST_F(NotifierFaultTests, AProgramThatAnswersAtLastIsReadOnceItSaysSo) {
    startBar();
    auto options = plain("late");
    // Registered by another name than the one that it answers to.
    options.answers = Answers::ToWellKnownName;
    NotifierClient& client = add(options);
    constexpr std::chrono::seconds untilTriesAreRare{7};
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(
        eventually([&] { return std::chrono::steady_clock::now() - begin > untilTriesAreRare; }));
    ASSERT_FALSE(x_.barItem("late").has_value());
    const auto recovered = std::chrono::steady_clock::now();
    client.change([](auto& changed) { changed.answers = Answers::Always; }, "NewIcon");
    EXPECT_TRUE(isColored("late", red));
    constexpr std::chrono::seconds nextTry{5};
    EXPECT_LT(std::chrono::steady_clock::now() - recovered, nextTry);
}

TEST_F(NotifierFaultTests, WhatIsOfAWrongTypeCountsAsMissing) {
    startBar();
    auto options = plain("wrong");
    options.more = [](sd_bus_message& reply) {
        sd_bus_message_append(&reply, "{sv}", "Status", "i", 7);
        sd_bus_message_append(&reply, "{sv}", "IconName", "as", 2, "a", "b");
        sd_bus_message_append(&reply, "{sv}", "IconPixmap", "s", "none");
        sd_bus_message_append(&reply, "{sv}", "ToolTip", "s", "a tool tip");
        sd_bus_message_append(&reply, "{sv}", "Menu", "b", 1);
        sd_bus_message_append(&reply, "{sv}", "ItemIsMenu", "s", "true");
        sd_bus_message_append(&reply, "{sv}", "Title", "v", "s", "in a variant");
    };
    add(options);
    EXPECT_TRUE(isColored("wrong", red));
}

TEST_F(NotifierFaultTests, PixmapsOfManyMegabytesAreNotKept) {
    // A sanitizer would keep what was freed.
    const auto given = display_.environment().find("ASAN_OPTIONS");
    display_.setEnvironment("ASAN_OPTIONS",
                            (given == display_.environment().end() ? "" : given->second + ":") +
                                "quarantine_size_mb=1");
    startBar();
    add(plain("good", blue));
    ASSERT_TRUE(isColored("good", blue));
    const long before = barMemory();
    auto options = plain("huge");
    constexpr std::size_t bytes = std::size_t{20} * 1024 * 1024;
    options.pixmaps = {{.width = 4096, .height = 1280, .bytes = std::vector<std::uint8_t>(bytes)}};
    NotifierClient& client = add(options);
    ASSERT_TRUE(eventually([&] { return client.questions() >= 2; }));
    EXPECT_TRUE(isColored("good", blue));
    EXPECT_TRUE(eventually([&] { return barMemory() - before < memoryBound; }));
    // It gets better.
    client.change([](auto& changed) { changed.pixmaps = {NotifierClient::plainPixmap(22, red)}; },
                  "NewIcon");
    client.registerItem();
    EXPECT_TRUE(isColored("huge", red));
}

TEST_F(NotifierFaultTests, FilesThatAreNoPicturesAreLeftAlone) {
    startBar();
    const auto folder = display_.folder();
    ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    std::filesystem::create_directories(folder / "folder.png");
    std::ofstream(folder / "text.png") << "no picture";
    std::ofstream(folder / "endless.svg")
        << R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink">)"
        << R"(<g id="a"><use xlink:href="#b"/><use xlink:href="#b"/></g>)"
        << R"(<g id="b"><use xlink:href="#a"/><use xlink:href="#a"/></g></svg>)";
    std::ofstream(folder / "secret") << "secret";
    std::filesystem::create_directories(folder / "theme");
    std::vector<std::string> wrong;
    for (const std::string& name :
         {(folder / "pipe.png").string(), (folder / "folder.png").string(),
          (folder / "text.png").string(), (folder / "endless.svg").string(),
          std::string("/dev/zero"), std::string("/proc/self/mem"), std::string("../secret"),
          std::string("../../text"), std::string(5'000, 'a'), std::string("/")}) {
        auto options = plain("file" + std::to_string(wrong.size()));
        options.iconName = name;
        options.iconThemePath = folder / "theme";
        wrong.push_back(options.id);
        add(options);
    }
    add(plain("good", blue));
    EXPECT_TRUE(isColored("good", blue));
    // A drawing that refers to itself is an empty one.
    std::erase(wrong, "file3");
    // The picture that they send as well stands in for the others.
    for (const std::string& id : wrong) {
        EXPECT_TRUE(isColored(id, red)) << id;
    }
}

} // namespace
} // namespace pelistra::testing
