#include "platform/linux/clicks/ClickDelivery.h"

#include "platform/linux/clicks/X11EventPosting.h"
#include "platform/linux/commandline/ListItems.h"
#include "platform/linux/icons/TrayReader.h"
#include "platform/linux/icons/X11ScreenCapture.h"
#include "platform/linux/programs/X11RunningApplications.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/MasterPointers.h"
#include "tests/desktop/harness/OtherTrays.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/RealTrayPrograms.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/linux/icons/TestTray.h"
#include "tests/linux/loop/RealTimeQueue.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

using linux::ClickDelivery;
using linux::PointerDevice;
using linux::RootPlace;
using linux::TrayIcon;
using linux::TrayReader;
using linux::TrayView;
using linux::X11EventPosting;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class StandardErrorLog final : public LogSink {
public:
    void write(std::string_view /*subsystem*/, std::string_view category, LogLevel /*level*/,
               std::string_view message) override {
        lines.push_back(std::string(category) + ": " + std::string(message));
    }

    std::vector<std::string> lines;
};

// What a program of GTK 3 listens to: buttons of all pointers, by XInput 2.
void selectButtons(XClient& program, xcb_window_t window) {
    constexpr xcb_input_device_id_t allMasters = 1;
    const x11::Owned<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        program.get(), xcb_input_xi_query_version(program.get(), 2, 2), nullptr));
    struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } const events{.header = {.deviceid = allMasters, .mask_len = 1},
                   .mask = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS |
                           XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE};
    xcb_input_xi_select_events(program.get(), window, 1, &events.header);
    program.sync();
}

bool hasSeveralColours(const linux::Pixels& picture) {
    return std::ranges::any_of(picture.values, [&picture](std::uint32_t value) {
        return value != picture.values.front();
    });
}

class ClickDeliveryTest : public ::testing::Test {
protected:
    void runLoop() {
        while (const auto event = connection->pollEvent()) {
            delivery->handle(*event);
        }
        queue.runDue();
        connection->flush();
    }
    template <class Condition>
    bool waitWhileRunning(Condition condition, std::chrono::milliseconds bound = patience) {
        return waitFor(
            [&] {
                runLoop();
                return condition();
            },
            bound);
    }
    bool post(const TrayIcon& icon) {
        const auto source = posting->source(EventSourceState::Private);
        const auto frame = reader->frameOf(icon.window);
        if (!frame) {
            return false;
        }
        const Point centre{.x = frame->midX(), .y = frame->midY()};
        const auto event = [&](EventType type) {
            auto made = posting->mouseEvent(*source, type, centre, MouseButton::Left);
            made->setIntegerValueField(event_field::targetUnixProcessId, icon.pid);
            made->setIntegerValueField(event_field::windowUnderMousePointer, icon.window);
            made->setIntegerValueField(event_field::windowUnderMousePointerThatCanHandleThisEvent,
                                       icon.window);
            made->setIntegerValueField(event_field::windowNumber, icon.window);
            made->setIntegerValueField(event_field::clickState, 1);
            return made;
        };
        return posting->postToPid(icon.pid, *event(EventType::LeftMouseDown)) &&
               posting->postToPid(icon.pid, *event(EventType::LeftMouseUp));
    }
    std::optional<TrayIcon> iconOf(const std::string& className) {
        const auto view = reader->read();
        if (view) {
            for (const TrayIcon& icon : view->icons) {
                if (icon.className == className) {
                    return icon;
                }
            }
        }
        return std::nullopt;
    }

    PrivateDisplay display{{.windowManager = true, .sessionBus = true}};
    XClient client{display.name()};
    UserInput user{client};
    RealTimeQueue queue;
    StandardErrorLog log;
    std::unique_ptr<x11::Connection> readerConnection = connect(display);
    std::unique_ptr<x11::Connection> connection = connect(display);
    std::unique_ptr<TrayReader> reader = std::make_unique<TrayReader>(*readerConnection);
    std::unique_ptr<ClickDelivery> delivery =
        std::make_unique<ClickDelivery>(*connection, queue, log);
    std::unique_ptr<X11EventPosting> posting =
        std::make_unique<X11EventPosting>(*reader, *delivery);
};

// Programs on Qt 6.8 do not survive the end of a pointer.
TEST_F(ClickDeliveryTest, LeavesItsPointerToWhoeverClicksNext) {
    TestTray tray(display.name(), TestTray::Kind::Ours);
    IconClient program(display.name());
    const auto window = program.makeWindow(24, 28);
    tray.embed(window, 300, 24, 28);
    user.moveTo({.x = 640, .y = 500});
    const PointerState before = client.pointer();
    ASSERT_TRUE(waitFor([&] { return iconOf("").has_value(); }));
    ASSERT_EQ(masterPointers(client).size(), 1U);
    EXPECT_TRUE(post(iconOf("").value()));
    EXPECT_EQ(masterPointers(client).size(), 2U);
    EXPECT_EQ(client.pointer(), before);
    const auto pointers = masterPointers(client);
    posting.reset();
    delivery.reset();
    delivery = std::make_unique<ClickDelivery>(*connection, queue, log);
    posting = std::make_unique<X11EventPosting>(*reader, *delivery);
    EXPECT_TRUE(post(iconOf("").value()));
    EXPECT_EQ(masterPointers(client), pointers);
    EXPECT_EQ(client.pointer(), before);
}

TEST_F(ClickDeliveryTest, TakesOverThePointerOfAProgramThatCrashedWithAButtonDown) {
    constexpr RootPlace place{.x = 100, .y = 100};
    const pid_t crashing = ::fork();
    if (crashing == 0) {
        const auto own = connect(display);
        x11::Replies replies(*own);
        PointerDevice device(*own, replies);
        const bool made = replies.begin(TrayReader::patience) && device.prepare();
        device.moveTo(place);
        device.press(XCB_BUTTON_INDEX_1);
        // With its answer, everything has arrived.
        static_cast<void>(device.isGrabbed());
        ::_exit(made ? 0 : 1);
    }
    int status = 1;
    ::waitpid(crashing, &status, 0);
    ASSERT_EQ(status, 0);
    const auto pointers = masterPointers(client);
    ASSERT_EQ(pointers.size(), 2U);

    const auto living = connect(display);
    x11::Replies replies(*living);
    PointerDevice other(*living, replies);
    ASSERT_TRUE(replies.begin(TrayReader::patience) && other.prepare());
    EXPECT_EQ(masterPointers(client), pointers);
    const x11::Owned<xcb_input_xi_query_pointer_reply_t> state(xcb_input_xi_query_pointer_reply(
        living->get(), xcb_input_xi_query_pointer(living->get(), living->root(), other.pointer()),
        nullptr));
    ASSERT_TRUE(state);
    ASSERT_GT(state->buttons_len, 0);
    EXPECT_EQ(xcb_input_xi_query_pointer_buttons(state.get())[0], 0U);
}

TEST_F(ClickDeliveryTest, ClicksNothingButTheWindowThatItIsAskedFor) {
    TestTray tray(display.name(), TestTray::Kind::Ours);
    IconClient program(display.name());
    const auto window = program.makeWindow(24, 28);
    tray.embed(window, 300, 24, 28);
    const RootPlace inside{.x = 310, .y = 10};
    EXPECT_FALSE(delivery->press(0x7fffff, ::getpid(), inside)) << "no such window";
    EXPECT_FALSE(delivery->press(window, 1, inside)) << "another process";
    EXPECT_FALSE(delivery->press(window, ::getpid(), {.x = -500, .y = 10})) << "off the screen";
    EXPECT_FALSE(delivery->release(window, inside)) << "nothing was pressed";

    const auto cover = program.makeWindow(400, 400);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    const std::uint32_t unmanaged = 1;
    xcb_change_window_attributes(program.x().get(), cover, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_map_window(program.x().get(), cover);
    xcb_configure_window(program.x().get(), cover, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    program.x().sync();
    EXPECT_FALSE(delivery->press(window, ::getpid(), inside)) << "covered";
    EXPECT_EQ(masterPointers(client).size(), 1U);
}

TEST_F(ClickDeliveryTest, SendsAPressAndAReleaseToAWindowThatListens) {
    TestTray tray(display.name(), TestTray::Kind::Ours);
    IconClient program(display.name());
    const auto window =
        program.makeWindow(24, 28, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE);
    tray.embed(window, 300, 24, 28);
    EXPECT_TRUE(post(iconOf("").value()));
    EXPECT_EQ(masterPointers(client).size(), 1U);
    std::vector<int> types;
    std::vector<int> states;
    ASSERT_TRUE(waitFor([&] {
        while (const auto event = program.x().connection().pollEvent()) {
            types.push_back(x11::typeOf(*event));
            const auto& button = x11::eventAs<xcb_button_press_event_t>(*event);
            EXPECT_EQ(button.root_x, 312);
            EXPECT_EQ(button.root_y, 14);
            EXPECT_EQ(button.event_x, 12);
            EXPECT_EQ(button.event_y, 14);
            EXPECT_EQ(button.detail, 3);
            EXPECT_NE(button.time, xcb_timestamp_t{XCB_CURRENT_TIME});
            states.push_back(button.state);
        }
        return types.size() >= 2;
    }));
    EXPECT_THAT(types, ElementsAre(XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE));
    EXPECT_THAT(states, ElementsAre(0, XCB_BUTTON_MASK_3));
}

TEST_F(ClickDeliveryTest, ClicksTheSecondaryButtonForTheLeftHandedToo) {
    const std::array<std::uint8_t, 3> swapped{3, 2, 1};
    const x11::Owned<xcb_get_pointer_mapping_reply_t> known(xcb_get_pointer_mapping_reply(
        client.get(), xcb_get_pointer_mapping(client.get()), nullptr));
    std::vector<std::uint8_t> mapping(known->map_len);
    std::iota(mapping.begin(), mapping.end(), std::uint8_t{1});
    std::ranges::copy(swapped, mapping.begin());
    const x11::Owned<xcb_set_pointer_mapping_reply_t> mapped(xcb_set_pointer_mapping_reply(
        client.get(),
        xcb_set_pointer_mapping(client.get(), static_cast<std::uint8_t>(mapping.size()),
                                mapping.data()),
        nullptr));
    ASSERT_TRUE(mapped && mapped->status == XCB_MAPPING_STATUS_SUCCESS);
    TestTray tray(display.name(), TestTray::Kind::Ours);
    IconClient program(display.name());
    const auto window = program.makeWindow(24, 28);
    tray.embed(window, 300, 24, 28);
    selectButtons(program.x(), window);
    EXPECT_TRUE(post(iconOf("").value()));
    std::vector<int> types;
    ASSERT_TRUE(waitFor([&] {
        while (const auto event = program.x().connection().pollEvent()) {
            if (x11::typeOf(*event) == XCB_GE_GENERIC) {
                const auto& button = x11::eventAs<xcb_input_button_press_event_t>(*event);
                types.push_back(button.event_type);
                EXPECT_EQ(button.detail, 3U);
            }
        }
        return types.size() >= 2;
    }));
    EXPECT_THAT(types, ElementsAre(XCB_INPUT_BUTTON_PRESS, XCB_INPUT_BUTTON_RELEASE));
}

TEST_F(ClickDeliveryTest, AnEventWithoutAWindowReachesNobody) {
    const auto source = posting->source(EventSourceState::Private);
    const auto event =
        posting->mouseEvent(*source, EventType::LeftMouseDown, {}, MouseButton::Left);
    EXPECT_FALSE(posting->postToPid(::getpid(), *event));
    event->setIntegerValueField(event_field::windowNumber, 1);
    EXPECT_FALSE(posting->postToPid(0, *event));
    EXPECT_EQ(posting->mouseEvent(*source, EventType::RightMouseDown, {}, MouseButton::Left),
              nullptr);
}

// A program whose icon opens a menu on a click of the secondary button.
struct MenuProgram {
    std::string name;
    // Such an icon is not sent the click: a second pointer makes it.
    bool isClicked = false;
    // It puts its menu at the user's pointer, whatever was clicked.
    bool opensAtPointer = false;
    // The help text of its icon comes up above the menu when the second pointer rests there.
    bool showsHelpText = false;
    // Tk gives its menu no key while no window of Tk has the focus, whoever has clicked.
    bool closesOnEscape = true;
    // The class of its icon and the script that makes it; empty for a program of the harness.
    std::string className = {};
    std::string interpreter = {};
    std::string script = {};
};

void PrintTo(const MenuProgram& program, std::ostream* stream) {
    *stream << program.name;
}

constexpr const char* tkScript = R"(
package require tktray
wm withdraw .
image create photo face -width 22 -height 22
face put #c02020 -to 0 0 22 22
tktray::icon .tray -image face -class TkTrayTest
menu .menu -tearoff 0
.menu add command -label "First entry" -command {}
.menu add command -label "Second entry" -command {}
bind .tray <ButtonPress-3> {tk_popup .menu %X %Y}
)";

// An indicator on a desktop without a watcher of status notifiers shows itself as an ordinary icon.
constexpr const char* indicatorScript = R"(
import gi
gi.require_version("Gtk", "3.0")
gi.require_version("AyatanaAppIndicator3", "0.1")
from gi.repository import Gtk, AyatanaAppIndicator3 as Indicator
indicator = Indicator.Indicator.new("indicator-test", "dialog-information",
                                    Indicator.IndicatorCategory.APPLICATION_STATUS)
indicator.set_status(Indicator.IndicatorStatus.ACTIVE)
menu = Gtk.Menu()
for label in ("First entry", "Second entry"):
    menu.append(Gtk.MenuItem(label=label))
menu.show_all()
indicator.set_menu(menu)
Gtk.main()
)";

class MenuProgramTest : public ClickDeliveryTest,
                        public ::testing::WithParamInterface<MenuProgram> {
protected:
    void SetUp() override {
        // What an indicator shows on the session bus has no menu of its own to be seen here.
        bar = std::make_unique<BarUnderTest>(display, client,
                                             std::vector<std::string>{"--no-status-notifier"});
        className = startProgram();
        ASSERT_TRUE(waitWhileRunning([&] { return findIcon(); })) << program->output();
        user.moveTo(resting);
        pointer = client.pointer();
        focus = client.focus();
    }

    // Some programs make their icon a second time while they start.
    bool findIcon() {
        const auto found = iconOf(className);
        icon = found.value_or(TrayIcon{});
        return found.has_value() && client.isViewable(found->window);
    }

    // Returns the class of its icon.
    std::string startProgram() {
        if (GetParam().script.empty()) {
            const RealTrayProgram& wanted = realTrayProgram(GetParam().name);
            program = startTrayProgram(display, wanted);
            return wanted.className;
        }
        const auto file = display.folder() / "script";
        std::ofstream(file) << GetParam().script;
        program = display.start({GetParam().interpreter, file.string()});
        return GetParam().className;
    }

    std::optional<WindowFrame> menu() {
        const auto windows = client.shownMenus();
        return windows.empty() ? std::nullopt : client.frame(windows.front());
    }
    // What the open menu shows once it has come to rest, with the user's pointer outside.
    Picture restingMenu() {
        constexpr std::chrono::milliseconds rest{150};
        user.moveTo(resting);
        Picture shown;
        EXPECT_TRUE(waitWhileRunning([&] {
            shown = client.capture(menu().value_or(WindowFrame{}));
            return shown.colours() > 1 &&
                   !waitWhileRunning(
                       [&] { return client.capture(menu().value_or(WindowFrame{})) != shown; },
                       rest);
        }));
        return shown;
    }
    void openMenu() {
        // A program that has just docked may still miss its first click.
        ASSERT_TRUE(waitWhileRunning([&] {
            return menu().has_value() || (findIcon() && post(icon) &&
                                          waitWhileRunning([&] { return menu().has_value(); },
                                                           std::chrono::milliseconds{1500}));
        })) << "no menu opened";
        EXPECT_EQ(masterPointers(client).size(), GetParam().isClicked ? 2U : 1U);
        ASSERT_TRUE(!GetParam().isClicked ||
                    waitWhileRunning([&] { return delivery->watchesMenu(); }));
    }
    RootPlace centreOfIcon() {
        const auto frame = client.frame(icon.window).value();
        return {.x = frame.midX(), .y = frame.midY()};
    }
    void expectClosed() {
        EXPECT_TRUE(waitWhileRunning([&] { return !menu().has_value(); })) << "the menu stays";
        EXPECT_TRUE(waitWhileRunning([&] { return !delivery->watchesMenu(); }));
        EXPECT_TRUE(program->isRunning());
    }

    static constexpr RootPoint resting{.x = 640, .y = 300};
    static constexpr RootPoint outside{.x = 30, .y = 780};
    std::unique_ptr<BarUnderTest> bar;
    std::unique_ptr<ChildProcess> program;
    std::string className;
    TrayIcon icon;
    PointerState pointer;
    xcb_window_t focus = 0;
};

TEST_P(MenuProgramTest, OpensItsMenuUnderTheIconAndMovesNothing) {
    openMenu();
    const WindowFrame shown = menu().value();
    const WindowFrame from = client.frame(icon.window).value();
    if (!GetParam().opensAtPointer) {
        EXPECT_LE(shown.x, from.right());
        EXPECT_GE(shown.right(), from.x);
        EXPECT_GE(shown.y, from.y);
        EXPECT_LE(shown.y, from.y + from.height + 8);
    }
    EXPECT_EQ(client.pointer(), pointer);
}

TEST_P(MenuProgramTest, OpensTheMenuThatTheUsersOwnRightClickOpens) {
    // A program that has just docked may still miss its first click.
    ASSERT_TRUE(waitWhileRunning([&] {
        user.click({.x = centreOfIcon().x, .y = centreOfIcon().y}, UserInput::Button::Right);
        return waitWhileRunning([&] { return menu().has_value(); },
                                std::chrono::milliseconds{1500});
    }));
    const WindowFrame wanted = menu().value();
    const Picture wantedPicture = GetParam().opensAtPointer ? Picture() : restingMenu();
    ASSERT_TRUE(waitWhileRunning([&] {
        user.click(outside);
        return waitWhileRunning([&] { return !menu().has_value(); },
                                std::chrono::milliseconds{1500});
    }));
    user.moveTo(resting);
    openMenu();
    const WindowFrame opened = menu().value();
    EXPECT_EQ(opened.width, wanted.width);
    EXPECT_EQ(opened.height, wanted.height);
    // At the pointer, the entry below it is lit.
    if (!GetParam().opensAtPointer && !GetParam().showsHelpText) {
        EXPECT_EQ(restingMenu().differingPixels(wantedPicture), 0U);
    }
}

// A click right after Escape is the next one that the program sees.
TEST_P(MenuProgramTest, OpensItsMenuEveryTime) {
    openMenu();
    for (int time = 0; time < 3; ++time) {
        // A menu that is just opening may miss the first key.
        ASSERT_TRUE(waitWhileRunning([&] {
            user.tapKey(keys::escape);
            if (!GetParam().closesOnEscape) {
                user.click(outside);
            }
            return waitWhileRunning([&] { return !menu().has_value(); },
                                    std::chrono::milliseconds{1000});
        }));
        ASSERT_TRUE(waitWhileRunning([&] { return !delivery->watchesMenu(); }));
        // Farther apart than the two halves of a double click, as two uses of the row are.
        ASSERT_FALSE(
            waitWhileRunning([&] { return menu().has_value(); }, std::chrono::milliseconds{500}));
        ASSERT_TRUE(post(icon));
        ASSERT_TRUE(waitWhileRunning([&] { return menu().has_value(); })) << time;
        ASSERT_TRUE(!GetParam().isClicked ||
                    waitWhileRunning([&] { return delivery->watchesMenu(); }));
    }
}

TEST_P(MenuProgramTest, ClosesItsMenuOnAClickOutside) {
    openMenu();
    // A menu that is just opening may miss the first click.
    EXPECT_TRUE(waitWhileRunning([&] {
        user.click(outside);
        return waitWhileRunning([&] { return !menu().has_value(); },
                                std::chrono::milliseconds{1500});
    }));
    expectClosed();
}

TEST_P(MenuProgramTest, ClosesItsMenuOnEscape) {
    openMenu();
    user.tapKey(keys::escape);
    if (GetParam().closesOnEscape) {
        expectClosed();
    } else {
        EXPECT_FALSE(delivery->watchesMenu());
        EXPECT_TRUE(program->isRunning());
    }
}

TEST_P(MenuProgramTest, LetsTheUserChooseWithTheirOwnPointer) {
    openMenu();
    const WindowFrame shown = menu().value();
    const Picture before = client.capture(shown);
    // The row under the user's pointer lights up. A menu that is just opening may miss the first
    // moves.
    int moves = 0;
    EXPECT_TRUE(waitWhileRunning([&] {
        ++moves;
        user.moveTo({.x = shown.x + 20 + moves % 4, .y = shown.y + shown.height - 14 + moves % 2});
        return client.capture(shown) != before;
    }));
    user.click(outside);
    expectClosed();
}

INSTANTIATE_TEST_SUITE_P(
    Programs, MenuProgramTest,
    ::testing::Values(MenuProgram{.name = "nabi", .opensAtPointer = true},
                      MenuProgram{.name = "xfce4-clipman", .isClicked = true},
                      MenuProgram{.name = "copyq", .opensAtPointer = true},
                      MenuProgram{.name = "volumeicon", .isClicked = true},
                      MenuProgram{.name = "pnmixer", .isClicked = true, .showsHelpText = true},
                      MenuProgram{.name = "qlipper"}, MenuProgram{.name = "qmidinet"},
                      MenuProgram{.name = "tktray",
                                  .closesOnEscape = false,
                                  .className = "TkTrayTest",
                                  .interpreter = "wish",
                                  .script = tkScript},
                      MenuProgram{.name = "indicator",
                                  .isClicked = true,
                                  .className = "indicator-test",
                                  .interpreter = "/usr/bin/python3",
                                  .script = indicatorScript}),
    [](const auto& tested) {
        std::string name = tested.param.name;
        std::erase(name, '-');
        return name;
    });

// Under a tray that is not ours, everything but the growing divider works as well.
class OtherTrayTest : public ClickDeliveryTest, public ::testing::WithParamInterface<OtherTray> {
protected:
    void SetUp() override {
        tray = startOtherTray(display, GetParam());
        ASSERT_TRUE(waitFor([&] { return client.trayOwner() != XCB_WINDOW_NONE; }))
            << tray->output();
        clipman = startTrayProgram(display, realTrayProgram("xfce4-clipman"));
        nabi = startTrayProgram(display, realTrayProgram("nabi"));
        ASSERT_TRUE(waitWhileRunning([&] { return isInPlace(listening) && isInPlace(sending); }))
            << tray->output() << clipman->output() << nabi->output();
    }

    [[nodiscard]] std::vector<TrayIcon> icons() {
        return reader->read().value_or(TrayView{}).icons;
    }
    [[nodiscard]] bool isInPlace(const std::string& className) {
        const auto icon = iconOf(className);
        return icon && client.isViewable(icon->window);
    }
    // Whether a click on the icon shows a menu; a program that has just docked may miss its first.
    [[nodiscard]] bool opensMenu(const std::string& className) {
        return waitWhileRunning([&] {
            return post(iconOf(className).value()) &&
                   waitWhileRunning([&] { return !client.shownMenus().empty(); },
                                    std::chrono::milliseconds{1500});
        });
    }
    [[nodiscard]] std::string list(bool json) const {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(linux::listItems(out, err, json, display.name()), 0);
        EXPECT_EQ(err.str(), "");
        return out.str();
    }

    // A program that takes clicks of pointers only, and one that takes sent clicks.
    const std::string listening = realTrayProgram("xfce4-clipman").className;
    const std::string sending = realTrayProgram("nabi").className;
    std::unique_ptr<ChildProcess> tray;
    std::unique_ptr<ChildProcess> clipman;
    std::unique_ptr<ChildProcess> nabi;
};

TEST_P(OtherTrayTest, ListsItsIcons) {
    const auto view = reader->read().value();
    EXPECT_FALSE(view.isMenuBar);
    EXPECT_EQ(view.icons.size(), 2U);
    EXPECT_LE(view.roundTrips, TrayReader::mostRoundTrips);
    EXPECT_EQ(iconOf(listening)->pid, clipman->pid());
    EXPECT_EQ(iconOf(sending)->pid, nabi->pid());

    for (const bool json : {true, false}) {
        const std::string text = list(json);
        for (const TrayIcon& icon : icons()) {
            const auto frame = client.frame(icon.window).value();
            EXPECT_EQ(icon.frame.x, frame.x);
            EXPECT_EQ(icon.frame.width, frame.width);
            EXPECT_THAT(text, HasSubstr(std::to_string(icon.pid)));
        }
        EXPECT_THAT(text, HasSubstr(json ? "\"hidden\":false" : "shown"));
        EXPECT_THAT(text, Not(HasSubstr(json ? "\"hidden\":true" : "hidden")));
    }
    EXPECT_THAT(list(true), HasSubstr("{\"id\":" + std::to_string(iconOf(sending)->window) +
                                      ",\"process\":" + std::to_string(nabi->pid())));
}

TEST_P(OtherTrayTest, TakesPicturesOfItsIcons) {
    linux::X11ScreenCapture capture(*readerConnection);
    for (const TrayIcon& icon : icons()) {
        // The tray may still be resizing it, and the program has to paint it first.
        EXPECT_TRUE(waitWhileRunning([&] {
            const auto frame = client.frame(icon.window).value();
            const linux::Pixels pixels = capture.pixelsOf(icon.window);
            return pixels.width == frame.width && pixels.height == frame.height &&
                   hasSeveralColours(pixels);
        })) << icon.className;
    }
}

TEST_P(OtherTrayTest, ClicksItsIconsAndMovesNothing) {
    user.moveTo({.x = 640, .y = 300});
    const PointerState pointer = client.pointer();
    for (const std::string& className : {listening, sending}) {
        ASSERT_TRUE(opensMenu(className)) << className;
        ASSERT_TRUE(className == sending ||
                    waitWhileRunning([&] { return delivery->watchesMenu(); }));
        EXPECT_EQ(client.pointer(), pointer);
        user.tapKey(keys::escape);
        EXPECT_TRUE(waitWhileRunning([&] { return client.shownMenus().empty(); })) << className;
        EXPECT_TRUE(waitWhileRunning([&] { return !delivery->watchesMenu(); })) << className;
    }
    EXPECT_TRUE(clipman->isRunning());
    EXPECT_TRUE(nabi->isRunning());
}

TEST_P(OtherTrayTest, OpensTheApplicationBehindAnIcon) {
    const TrayIcon icon = iconOf(listening).value();
    // It has no window, so its entry is launched.
    const auto marker = display.folder() / "opened";
    const auto entries = display.folder() / "entries";
    std::filesystem::create_directories(entries);
    std::ofstream(entries / "clipman.desktop")
        << "[Desktop Entry]\nType=Application\nName=Clipman\nStartupWMClass=" << icon.className
        << "\nExec=/bin/touch " << marker.string() << "\n";
    linux::X11RunningApplications own(display.name(), {.folders = {entries}});
    EXPECT_EQ(own.ownerName(icon), "Clipman");
    const auto application = own.runningApplication(icon.pid);
    ASSERT_NE(application, nullptr);
    EXPECT_TRUE(application->activate(activateAllWindows));
    EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(marker); }));
}

INSTANTIATE_TEST_SUITE_P(Trays, OtherTrayTest, ::testing::ValuesIn(otherTrays()),
                         [](const auto& tested) {
                             std::string name = tested.param.name;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace pelistra::testing
