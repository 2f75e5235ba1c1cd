#include "platform/x11/PublishedItems.h"
#include "tests/menubar/NotifierFixture.h"

#include <algorithm>
#include <csignal>

#include <unistd.h>

namespace pelistra::testing {
namespace {

using Registration = NotifierClient::Registration;
using Answers = NotifierClient::Answers;
using NotifierTests = NotifierFixture;

TEST_F(NotifierTests, ShowsAnIconThatRegistersInAnyWay) {
    startBar();
    for (const auto registration :
         {Registration::UniqueName, Registration::WellKnownName, Registration::Path}) {
        auto options = plain("icon" + std::to_string(static_cast<int>(registration)));
        options.registration = registration;
        options.path =
            registration == Registration::Path ? "/org/example/icon" : "/StatusNotifierItem";
        NotifierClient& client = add(options);
        ASSERT_TRUE(eventually([&] { return x_.barItem(options.id).has_value(); }));
        EXPECT_TRUE(client.isRegistered());
        EXPECT_TRUE(isColored(options.id, red));
    }
}

TEST_F(NotifierTests, AsksUnderTheNameThatIsAnswered) {
    startBar();
    auto options = plain("unique");
    options.registration = Registration::WellKnownName;
    options.answers = Answers::ToUniqueName;
    add(options);
    options.id = "wellknown";
    options.answers = Answers::ToWellKnownName;
    add(options);
    EXPECT_TRUE(eventually(
        [&] { return x_.barItem("unique").has_value() && x_.barItem("wellknown").has_value(); }));
}

TEST_F(NotifierTests, ShowsOneIconThatRegistersSeveralTimes) {
    startBar();
    auto options = plain("once");
    options.registration = Registration::WellKnownName;
    NotifierClient& client = add(options);
    ASSERT_TRUE(shows({"once"}));
    client.registerItem();
    ASSERT_TRUE(eventually([&] { return client.isRegistered() && client.questions() > 1; }));
    EXPECT_TRUE(shows({"once"}));
}

TEST_F(NotifierTests, FollowsWhatTheProgramSays) {
    startBar();
    NotifierClient& client = add(plain("changing"));
    ASSERT_TRUE(isColored("changing", red));
    client.change(
        [](auto& options) { options.pixmaps = {NotifierClient::plainPixmap(iconSide, blue)}; },
        "NewIcon");
    EXPECT_TRUE(isColored("changing", blue));
    client.change([](auto& options) { options.status = "Passive"; }, "NewStatus");
    EXPECT_TRUE(shows({}));
    client.change([](auto& options) { options.status = "Active"; }, "NewStatus");
    EXPECT_TRUE(shows({"changing"}));
    client.change([](auto& options) { options.label = "a label"; }, "XAyatanaNewLabel");
    EXPECT_TRUE(eventually([&] { return frameOf("changing").width > 2 * barHeight; }));
}

TEST_F(NotifierTests, FindsIconsOfThemesByTheirNames) {
    startBar();
    // Of the theme that everybody has; its pixels are not those that the program sends.
    auto options = plain("named");
    options.iconName = "dialog-information";
    add(options);
    ASSERT_TRUE(shows({"named"}));
    EXPECT_TRUE(eventually([&] {
        const WindowFrame frame = frameOf("named");
        return (pixel(frame.midX(), frame.midY()) & colorBits) != (red & colorBits);
    }));
}

TEST_F(NotifierTests, LetsAnIconGoWithItsProgram) {
    startBar();
    NotifierClient& first = add(plain("first"));
    ASSERT_TRUE(shows({"first"}));
    add(plain("second"));
    ASSERT_TRUE(shows({"second", "first"}));
    end(first);
    EXPECT_TRUE(shows({"second"}));
}

TEST_F(NotifierTests, PassesOnWhatTheUserDoes) {
    startBar();
    NotifierClient& client = add(plain("clicked"));
    ASSERT_TRUE(shows({"clicked"}));
    const WindowFrame frame = frameOf("clicked");
    const std::string place =
        " " + std::to_string(frame.midX()) + " " + std::to_string(frame.midY());
    const std::string below = " " + std::to_string(frame.x) + " " + std::to_string(barHeight);
    const std::vector<std::string> expected{"Activate" + place, "SecondaryActivate" + place,
                                            "ContextMenu" + below, "Scroll 120 vertical",
                                            "Scroll -120 vertical"};
    user_.click(centre(frame));
    user_.click(centre(frame), UserInput::Button::Middle);
    user_.click(centre(frame), UserInput::Button::Right);
    user_.turnWheel(centre(frame), UserInput::Wheel::Up, 1);
    user_.turnWheel(centre(frame), UserInput::Wheel::Down, 1);
    EXPECT_TRUE(eventually([&] { return client.calls().size() >= expected.size(); }));
    EXPECT_EQ(client.calls(), expected);
}

TEST_F(NotifierTests, ThePrimaryButtonOpensTheMenuOfAnIconThatIsOneOrKnowsNothingElse) {
    startBar();
    auto options = plain("menu");
    options.itemIsMenu = true;
    NotifierClient& menu = add(options);
    options = plain("refusing");
    options.methods = {"ContextMenu"};
    NotifierClient& refusing = add(options);
    ASSERT_TRUE(eventually([&] { return x_.barItem("menu") && x_.barItem("refusing"); }));
    const auto isAskedForItsMenu = [](const NotifierClient& client) {
        return client.calls().size() == 1 && client.calls().front().starts_with("ContextMenu ");
    };
    user_.click(centre(frameOf("menu")));
    user_.click(centre(frameOf("refusing")));
    EXPECT_TRUE(eventually([&] { return isAskedForItsMenu(menu) && isAskedForItsMenu(refusing); }));
}

TEST_F(NotifierTests, ComesBackToItsPlaceAfterTheBarWasKilledOrEnded) {
    for (const int signal : {SIGKILL, SIGTERM}) {
        startBar();
        if (signal == SIGKILL) {
            for (const char* const id : {"right", "middle", "left"}) {
                add(plain(id));
                ASSERT_TRUE(eventually([&] { return x_.barItem(id).has_value(); }));
            }
        }
        const std::vector<std::string> order{"left", "middle", "right"};
        ASSERT_TRUE(shows(order));
        bar().process().signal(signal);
        ASSERT_TRUE(bar().process().waitForExit());
        startBar();
        EXPECT_TRUE(shows(order)) << "after signal " << signal;
    }
}

TEST_F(NotifierTests, TellsTheProcessBehindAnIcon) {
    startBar();
    add(plain("told"));
    ASSERT_TRUE(shows({"told"}));
    EXPECT_TRUE(eventually([&] {
        const auto property = x_.windowProperty(x_.trayOwner(), "_PELISTRA_MENUBAR_ITEM_DETAILS");
        const auto items = property ? x11::publishedItemsIn(*property) : std::nullopt;
        return items && items->size() == 1 && items->front().process == ::getpid() &&
               items->front().instance == "told";
    }));
}

TEST_F(NotifierTests, FindsIconsThatHaveRegisteredNowhere) {
    auto options = plain("early");
    options.registration = Registration::WellKnownName;
    add(options);
    startBar();
    EXPECT_TRUE(shows({"early"}));
}

TEST_F(NotifierTests, ShowsNoneWhenSwitchedOff) {
    BarFixture::startBar({"--no-status-notifier"});
    NotifierClient& client = add(plain("unseen"));
    dockNamed("window");
    EXPECT_TRUE(shows({"window"}));
    EXPECT_FALSE(client.isRegistered());
}

TEST_F(NotifierTests, KeepsThePlaceOfAProgramThatChangesTheProtocol) {
    startBar();
    dockNamed("right");
    TrayClient& window = dock(TrayClient::Options{.name = "changer"});
    dockNamed("left");
    endClient(window);
    add(plain("Changer"));
    EXPECT_TRUE(shows({"left", "Changer", "right"}));
}

TEST_F(NotifierTests, IsHarmedByNoProgramThatMisbehaves) {
    startBar();
    auto silent = plain("silent");
    silent.answers = Answers::Never;
    add(silent);
    auto wrong = plain("wrong");
    wrong.pixmaps = {{.width = 1 << 30, .height = 1 << 30, .bytes = {1, 2, 3}},
                     {.width = -1, .height = 4, .bytes = {}},
                     {.width = 2, .height = 2, .bytes = {1}}};
    add(wrong);
    auto many = plain("many");
    many.pixmaps.assign(100'000, {.width = 1, .height = 1, .bytes = {1, 2, 3, 4}});
    add(many);
    auto loud = plain(std::string(1'000'000, 'x'));
    loud.title.assign(1'000'000, '\x01').append("\xE2\x80\xAE");
    loud.label = std::string(1'000'000, 'y');
    add(loud);
    auto file = plain("file");
    file.iconName = "/dev/zero";
    add(file);
    add(plain("good", blue));
    EXPECT_TRUE(isColored("good", blue));
    // What is no picture shows something all the same.
    EXPECT_TRUE(eventually([&] { return x_.barItem("wrong") && x_.barItem("file"); }));
    EXPECT_FALSE(x_.barItem("silent").has_value());
    EXPECT_LT(frameOf(std::string(128, 'x')).width, 10 * barHeight);
}

} // namespace
} // namespace pelistra::testing
