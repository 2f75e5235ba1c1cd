#include "platform/linux/windows/QtPanels.h"

#include "tests/contract/PanelsContract.h"
#include "tests/linux/windows/QtOnDisplay.h"
#include "ui/Content.h"
#include "ui/Nodes.h"

#include <algorithm>

#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <gmock/gmock.h>
#include <xcb/shape.h>

namespace pelistra::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::SizeIs;

const std::string panelTitle = "Pelistra 第二行";
constexpr QRgb cardColour = 0xff3a6ea5;
// What the card leaves free around itself.
constexpr int inset = 4;

class NoContent final : public ui::Content {
public:
    [[nodiscard]] ui::View body() override { return ui::Spacer{}; }

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& /*changed*/) override {
        return {};
    }
};

// A rounded card that counts how often it is drawn and pressed.
class Card final : public QWidget {
public:
    struct Counts {
        int made = 0;
        int presses = 0;
        QRgb colour = cardColour;
        bool translucent = false;
    };
    explicit Card(Counts& counts) : counts_(counts) { ++counts_.made; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        constexpr int radius = 16;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(counts_.colour));
        painter.drawRoundedRect(rect().adjusted(inset, inset, -inset, -inset), radius, radius);
    }
    void mousePressEvent(QMouseEvent* /*event*/) override { ++counts_.presses; }

private:
    Counts& counts_;
};

class PanelTest : public QtOnDisplay {
protected:
    explicit PanelTest(const PrivateDisplay::Options& options = {}, const char* scaleFactor = "1")
        : QtOnDisplay(options, scaleFactor) {}

    [[nodiscard]] std::unique_ptr<Panel> makePanel() {
        auto panel = panels_.panel({.contentSize = {.width = 420, .height = 78},
                                    .styleMask = window_style::nonactivatingPanel,
                                    .title = panelTitle,
                                    .accessibilityLabel = "Pelistra 第二行溢出栏",
                                    .hasShadow = true});
        panel->setContent(std::make_shared<NoContent>());
        return panel;
    }
    // The panel's window, once it is on the screen.
    [[nodiscard]] xcb_window_t shownWindow() {
        const auto look = [this]() -> std::optional<xcb_window_t> {
            QCoreApplication::processEvents();
            for (const xcb_window_t window : client_.children(client_.root())) {
                if (client_.title(window) == panelTitle && client_.isViewable(window)) {
                    return window;
                }
            }
            return std::nullopt;
        };
        return waitForValue(look).value_or(XCB_WINDOW_NONE);
    }
    [[nodiscard]] std::vector<xcb_rectangle_t> shape(xcb_window_t window, xcb_shape_kind_t kind) {
        const x11::Owned<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
            client_.get(), xcb_shape_get_rectangles(client_.get(), window, kind), nullptr));
        if (!reply) {
            return {};
        }
        const auto* first = xcb_shape_get_rectangles_rectangles(reply.get());
        return {first, first + xcb_shape_get_rectangles_rectangles_length(reply.get())};
    }
    [[nodiscard]] bool shapeHas(xcb_window_t window, xcb_shape_kind_t kind, int x, int y) {
        return std::ranges::any_of(shape(window, kind), [x, y](const xcb_rectangle_t& rect) {
            return x >= rect.x && x < rect.x + rect.width && y >= rect.y &&
                   y < rect.y + rect.height;
        });
    }
    // Claims to be the compositor.
    void beginCompositing(XClient& compositor) {
        const xcb_window_t owner = compositor.connection().newId();
        xcb_create_window(compositor.get(), XCB_COPY_FROM_PARENT, owner, compositor.root(), -1, -1,
                          1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(compositor.get(), owner, compositor.atom("_NET_WM_CM_S0"),
                                XCB_CURRENT_TIME);
        compositor.sync();
    }

    double scale_ = 1;
    Card::Counts card_;
    Published<linux::Look> look_;
    linux::QtPanels panels_{
        {.connection = *connection_,
         .observeEvents =
             [this](linux::EventPump::Handler handler) {
                 return pump_->addHandler(std::move(handler));
             },
         .coordinates =
             [this] {
                 const WindowFrame root = client_.rootFrame();
                 return linux::Coordinates(
                     scale_, {.x = 0, .y = 0, .width = root.width, .height = root.height});
             },
         .contentWidget =
             [this](const std::shared_ptr<ui::Content>&, bool translucent) {
                 card_.translucent = translucent;
                 return std::make_unique<Card>(card_);
             },
         .look = look_}};
};

class QtPanelsBackend final : public PanelTest {
public:
    using PanelTest::runUntil;
    [[nodiscard]] Panels& panels() { return panels_; }
    [[nodiscard]] std::optional<ScreenRect> shownFrame() {
        for (const xcb_window_t window : client_.children(client_.root())) {
            const auto frame = client_.frame(window);
            if (frame && client_.title(window) == panelTitle && client_.isViewable(window)) {
                const int bottom = client_.rootFrame().height - frame->y - frame->height;
                return makeRect<ScreenSpace>(frame->x, bottom, frame->width, frame->height);
            }
        }
        return std::nullopt;
    }

private:
    void TestBody() override {}
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, PanelsContract, QtPanelsBackend);

TEST_F(PanelTest, CostsNothingUntilItIsShown) {
    const auto panel = makePanel();
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(card_.made, 0);
    EXPECT_THAT(QApplication::topLevelWidgets(), SizeIs(0));
}

TEST_F(PanelTest, LiesWhereItWasPutBottomLeftInPoints) {
    const auto panel = makePanel();
    panel->setContentSize({.width = 320, .height = 78});
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(client_.frame(shownWindow()),
              (WindowFrame{.x = 600, .y = 800 - 500 - 78, .width = 320, .height = 78}));
}

TEST_F(PanelTest, MovesWhileItIsShown) {
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    panel->setContentSize({.width = 280, .height = 78});
    panel->setFrameOrigin({.x = 10, .y = 20});
    EXPECT_TRUE(runUntil([&] {
        return client_.frame(window) ==
               WindowFrame{.x = 10, .y = 800 - 20 - 78, .width = 280, .height = 78};
    }));
    EXPECT_EQ(card_.made, 1);
}

TEST_F(PanelTest, HidesAndComesBackWithTheSameContent) {
    const auto panel = makePanel();
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_TRUE(runUntil([&] { return !client_.isMapped(window); }));
    panel->orderFrontRegardless();
    EXPECT_EQ(shownWindow(), window);
    EXPECT_EQ(card_.made, 1);
}

TEST_F(PanelTest, IsNoBusinessOfWindowManagersPagersAndTaskbars) {
    const auto panel = makePanel();
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    const x11::Owned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        client_.get(), xcb_get_window_attributes(client_.get(), window), nullptr));
    ASSERT_TRUE(attributes);
    EXPECT_EQ(attributes->override_redirect, 1);
    EXPECT_TRUE(client_.hasAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY"));
    for (const char* state : {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY",
                              "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        EXPECT_TRUE(client_.hasAtom(window, "_NET_WM_STATE", state)) << state;
    }
    EXPECT_THAT(client_.words(window, "_NET_WM_DESKTOP"), ElementsAre(0xffffffff));
}

TEST_F(PanelTest, WithoutACompositorItIsCutAlongWhatItShows) {
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    EXPECT_FALSE(card_.translucent);
    EXPECT_TRUE(shapeHas(window, XCB_SHAPE_SK_BOUNDING, 210, 39));
    EXPECT_FALSE(shapeHas(window, XCB_SHAPE_SK_BOUNDING, 0, 0));
    EXPECT_FALSE(shapeHas(window, XCB_SHAPE_SK_BOUNDING, 2, 39));
    // A hairline around the card.
    EXPECT_TRUE(shapeHas(window, XCB_SHAPE_SK_BOUNDING, inset - 1, 39));
    EXPECT_TRUE(runUntil([&] {
        const Picture picture = client_.capture(*client_.frame(window));
        return picture.at(210, 39) == (cardColour & 0xffffff) &&
               picture.at(inset - 1, 39) != picture.at(inset, 39);
    }));
}

TEST_F(PanelTest, TheHairlineFollowsTheLook) {
    constexpr QRgb dark = 0xff202020;
    constexpr QRgb light = 0xfff0f0f0;
    card_.colour = light;
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const WindowFrame frame = *client_.frame(shownWindow());
    const auto hairline = [&] { return client_.capture(frame).at(inset - 1, 39) & 0xff; };
    ASSERT_TRUE(runUntil([&] { return hairline() > 0xa0; }));
    const auto changeTo = [&](QRgb colour) {
        card_.colour = colour;
        linux::Look look;
        look.isDark = colour == dark;
        look_.set(look);
    };
    changeTo(dark);
    EXPECT_TRUE(runUntil([&] { return hairline() < 0x60; }));
    // While it is hidden, it learns of it at the next showing.
    panel->orderOut();
    changeTo(light);
    panel->orderFrontRegardless();
    EXPECT_TRUE(runUntil([&] { return hairline() > 0xa0; }));
}

TEST_F(PanelTest, WithACompositorItHasAnAlphaChannelAndAShadowThatLetsClicksThrough) {
    XClient compositor(display_.name());
    beginCompositing(compositor);
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    EXPECT_TRUE(card_.translucent);
    const x11::Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(client_.get(), xcb_get_geometry(client_.get(), window), nullptr));
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->depth, 32);
    const auto extents = client_.words(window, "_GTK_FRAME_EXTENTS");
    ASSERT_THAT(extents, SizeIs(4));
    const WindowFrame frame = *client_.frame(window);
    EXPECT_EQ(frame.x + static_cast<int>(extents[0]), 600);
    EXPECT_EQ(frame.right() - static_cast<int>(extents[1]), 600 + 420);
    EXPECT_EQ(frame.y + static_cast<int>(extents[2]), 800 - 500 - 78);
    EXPECT_EQ(frame.height, 78 + static_cast<int>(extents[2] + extents[3]));
    const int left = static_cast<int>(extents[0]);
    const int top = static_cast<int>(extents[2]);
    EXPECT_FALSE(shapeHas(window, XCB_SHAPE_SK_INPUT, 5, top + 39));
    EXPECT_FALSE(shapeHas(window, XCB_SHAPE_SK_INPUT, left + 1, top + 39));
    EXPECT_TRUE(shapeHas(window, XCB_SHAPE_SK_INPUT, left + 210, top + 39));
}

TEST_F(PanelTest, FollowsACompositorThatComesAndGoes) {
    const auto panel = makePanel();
    panel->orderFrontRegardless();
    static_cast<void>(shownWindow());
    {
        XClient compositor(display_.name());
        beginCompositing(compositor);
        panel->orderOut();
        panel->orderFrontRegardless();
        EXPECT_TRUE(card_.translucent);
        EXPECT_NE(shownWindow(), XCB_WINDOW_NONE);
    }
    ASSERT_TRUE(
        runUntil([&] { return client_.selectionOwner("_NET_WM_CM_S0") == XCB_WINDOW_NONE; }));
    panel->orderOut();
    panel->orderFrontRegardless();
    EXPECT_FALSE(card_.translucent);
    EXPECT_NE(shownWindow(), XCB_WINDOW_NONE);
}

TEST_F(PanelTest, FollowsACompositorThatComesAndGoesWhileItIsShown) {
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const auto before = client_.frame(shownWindow());
    for (int round = 0; round < 2; ++round) {
        {
            XClient compositor(display_.name());
            beginCompositing(compositor);
            EXPECT_TRUE(runUntil([this] { return card_.translucent; }));
            EXPECT_TRUE(runUntil([&] { return client_.frame(shownWindow()) != before; }));
        }
        EXPECT_TRUE(runUntil([this] { return !card_.translucent; }));
        EXPECT_TRUE(runUntil([&] { return client_.frame(shownWindow()) == before; }));
    }
    panel->orderOut();
    XClient compositor(display_.name());
    beginCompositing(compositor);
    EXPECT_TRUE(staysTrueWhileRunning([&] { return !panel->isVisible() && !card_.translucent; }));
}

TEST_F(PanelTest, TakesClicksAndNoFocus) {
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    const xcb_window_t focus = client_.focus();
    input_.click(centre(*client_.frame(window)));
    EXPECT_TRUE(runUntil([&] { return card_.presses == 1; }));
    EXPECT_EQ(client_.focus(), focus);
    EXPECT_TRUE(client_.words(window, "WM_HINTS").size() > 1 &&
                client_.words(window, "WM_HINTS")[1] == 0);
}

TEST_F(PanelTest, LiesAboveWindowsThatCameLater) {
    const auto panel = makePanel();
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    QWidget other;
    other.setWindowFlag(Qt::BypassWindowManagerHint);
    other.show();
    const auto otherWindow = static_cast<xcb_window_t>(other.winId());
    ASSERT_TRUE(runUntil([&] { return client_.isAbove(otherWindow, window); }));
    panel->orderFrontRegardless();
    EXPECT_TRUE(runUntil([&] { return client_.isAbove(window, otherWindow); }));
}

TEST_F(PanelTest, GoesWithItsPanelAlsoFromInsideItsOwnEvent) {
    auto panel = makePanel();
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    QTimer::singleShot(0, [&] { panel.reset(); });
    EXPECT_TRUE(runUntil([&] { return !client_.exists(window); }));
}

TEST_F(PanelTest, OpeningAndClosingAThousandTimesKeepsOneWindow) {
    const auto panel = makePanel();
    for (int i = 0; i < 1000; ++i) {
        panel->orderFrontRegardless();
        QCoreApplication::processEvents();
        panel->orderOut();
    }
    EXPECT_EQ(card_.made, 1);
    EXPECT_THAT(QApplication::topLevelWidgets(), SizeIs(1));
}

class ScaledPanelTest : public PanelTest {
protected:
    ScaledPanelTest() : PanelTest({}, "2") { scale_ = 2; }
};

TEST_F(ScaledPanelTest, IsAsLargeAsItsPointsSay) {
    ASSERT_EQ(QGuiApplication::primaryScreen()->devicePixelRatio(), 2);
    const auto panel = makePanel();
    panel->setContentSize({.width = 320, .height = 78});
    panel->setFrameOrigin({.x = 200, .y = 100});
    panel->orderFrontRegardless();
    EXPECT_EQ(client_.frame(shownWindow()),
              (WindowFrame{.x = 400, .y = 800 - 200 - 156, .width = 640, .height = 156}));
}

class PanelWithWindowManagerTest : public PanelTest {
protected:
    PanelWithWindowManagerTest() : PanelTest({.windowManager = true}) {}
};

TEST_F(PanelWithWindowManagerTest, LiesAboveAFullScreenWindowAndLeavesItTheFocus) {
    QWidget movie;
    movie.setWindowTitle("Movie");
    movie.showFullScreen();
    const auto movieWindow = static_cast<xcb_window_t>(movie.winId());
    ASSERT_TRUE(runUntil([&] {
        const auto frame = client_.frame(movieWindow);
        return frame && frame->width == 1280 && frame->height == 800 &&
               client_.focus() == movieWindow;
    }));
    const auto panel = makePanel();
    panel->setFrameOrigin({.x = 600, .y = 500});
    panel->orderFrontRegardless();
    const xcb_window_t window = shownWindow();
    EXPECT_TRUE(client_.isAbove(window, movieWindow));
    EXPECT_EQ(client_.focus(), movieWindow);
    EXPECT_THAT(client_.managedWindows(), ::testing::Not(Contains(window)));
    input_.click(centre(*client_.frame(window)));
    EXPECT_TRUE(runUntil([&] { return card_.presses == 1; }));
    EXPECT_EQ(client_.focus(), movieWindow);
    EXPECT_TRUE(client_.isAbove(window, movieWindow));
}

} // namespace

} // namespace pelistra::testing
