#include "platform/linux/views/ContentWidget.h"

#include "secondrow/SecondRowRightClickCapture.h"
#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeLoginItem.h"
#include "tests/platform/FakeMainQueue.h"
#include "tests/platform/Journal.h"
#include "ui/Nodes.h"
#include "ui/OnboardingView.h"
#include "ui/SettingsView.h"

#include <array>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QWheelEvent>

namespace pelistra::linux {
namespace {

using namespace ui;
using pelistra::testing::FakeApplication;
using pelistra::testing::FakeLoginItem;
using pelistra::testing::FakeMainQueue;
using pelistra::testing::Journal;

// Shows whatever view it is given.
class GivenContent final : public Content {
public:
    explicit GivenContent(View view) : view_(std::move(view)) {}
    [[nodiscard]] View body() override { return view_.get(); }
    void show(View view) { view_.set(std::move(view)); }

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) override {
        std::vector<SubscriptionPtr> tokens;
        tokens.push_back(observeChanges(view_, changed));
        return tokens;
    }

private:
    Published<View> view_;
};

class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// The QApplication of this program's tests, on no display at all.
class QtEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_.emplace(count_, arguments_.data());
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    std::array<char, 6> name_ = {"views"};
    std::array<char*, 2> arguments_ = {name_.data(), nullptr};
    std::optional<QApplication> application_;
};

// NOLINTNEXTLINE(cppcoreguidelines-owning-memory): GoogleTest deletes it
const auto* const qtEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

class ContentWidgetTest : public ::testing::Test {
protected:
    void show(View view, int width = 400, int height = 200) {
        content_ = std::make_shared<GivenContent>(std::move(view));
        host(content_, width, height);
    }

    void host(std::shared_ptr<Content> content, int width, int height) {
        widget_ = std::make_unique<ContentWidget>(std::move(content), services_);
        widget_->resize(width, height);
        widget_->show();
        settle();
    }

    void setLook(const std::function<void(Look&)>& change) { look_.mutate(change); }

    void settle() {
        queue_.runUntilIdle();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    void change(View view) {
        content_->show(std::move(view));
        settle();
    }

    [[nodiscard]] QPushButton& button(const char* name) const {
        for (auto* each : widget_->findChildren<QPushButton*>()) {
            if (each->accessibleName() == QString::fromUtf8(name) && each->isVisible()) {
                return *each;
            }
        }
        throw std::runtime_error(std::string("no button ") + name);
    }

    void click(QWidget& widget, Qt::MouseButton mouseButton = Qt::LeftButton) {
        const QPointF at = QRectF(widget.rect()).center();
        const QPointF global = widget.mapToGlobal(at);
        QMouseEvent press(QEvent::MouseButtonPress, at, global, mouseButton, mouseButton, {});
        QMouseEvent release(QEvent::MouseButtonRelease, at, global, mouseButton, {}, {});
        QCoreApplication::sendEvent(&widget, &press);
        QCoreApplication::sendEvent(&widget, &release);
        settle();
    }

    void key(int code) {
        QWidget* target =
            widget_->focusWidget() != nullptr ? widget_->focusWidget() : widget_.get();
        QKeyEvent press(QEvent::KeyPress, code, {});
        QKeyEvent release(QEvent::KeyRelease, code, {});
        QCoreApplication::sendEvent(target, &press);
        QCoreApplication::sendEvent(target, &release);
        settle();
    }

    [[nodiscard]] QImage picture() const {
        QImage pixels(widget_->size(), QImage::Format_ARGB32);
        pixels.fill(Qt::white);
        widget_->render(&pixels);
        return pixels;
    }

    [[nodiscard]] QColor colourAt(int x, int y) const { return picture().pixelColor(x, y); }

    // How much black a text leaves, in fully black pixels.
    double inkOf(const Text& text) {
        show(text);
        const QImage pixels = picture();
        double ink = 0;
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                ink += 1 - pixels.pixelColor(x, y).lightnessF();
            }
        }
        return ink;
    }

    Journal journal_;
    FakeMainQueue queue_{journal_};
    FakeApplication application_{journal_};
    Published<Look> look_;
    ViewServices services_ = {.mainQueue = queue_,
                              .application = application_,
                              .handleEvent =
                                  [this](const Event& event, const std::function<void()>& block) {
                                      application_.event = event;
                                      block();
                                      application_.event.reset();
                                  },
                              .look = look_};
    std::shared_ptr<GivenContent> content_;
    std::unique_ptr<ContentWidget> widget_;
};

View named(const char* name, Action action = {}) {
    return Button{.label = Text{.text = name}, .action = std::move(action)};
}

View fixed(double width, double height, const char* name) {
    return View(Button{.label = View(FilledShape{.outline = Rectangle(), .fill = Color{}})
                                    .frame({.width = width, .height = height}),
                       .style = ButtonStyle::Plain})
        .accessibilityLabel(name);
}

TEST_F(ContentWidgetTest, AStackPlacesItsChildrenOneAfterTheOther) {
    show(HStack{.spacing = 7, .children = {fixed(40, 20, "a"), fixed(30, 50, "b")}});
    EXPECT_EQ(button("a").geometry(), QRect(162, 90, 40, 20));
    EXPECT_EQ(button("b").geometry(), QRect(209, 75, 30, 50));
}

TEST_F(ContentWidgetTest, ASpacerTakesWhatAStackHasLeft) {
    show(HStack{.children = {fixed(40, 20, "a"), Spacer(), fixed(30, 20, "b")}});
    EXPECT_EQ(button("a").x(), 0);
    EXPECT_EQ(button("b").x(), 370);
}

TEST_F(ContentWidgetTest, AFrameBoundsAndAlignsItsContent) {
    show(fixed(40, 20, "a")
             .frame({.maxWidth = infinity,
                     .minHeight = 100,
                     .alignment = {.horizontal = HorizontalAlignment::Trailing,
                                   .vertical = VerticalAlignment::Bottom}}));
    EXPECT_EQ(button("a").geometry(), QRect(360, 130, 40, 20));
}

TEST_F(ContentWidgetTest, PaddingLiesAroundItsContent) {
    show(View(VStack{.alignment = HorizontalAlignment::Leading,
                     .children = {fixed(40, 20, "a"), fixed(60, 20, "b")}})
             .padding({.top = 10, .leading = 30}));
    // 90 wide and 50 high in the middle of the widget.
    EXPECT_EQ(button("a").geometry(), QRect(185, 85, 40, 20));
    EXPECT_EQ(button("b").geometry(), QRect(185, 105, 60, 20));
}

TEST_F(ContentWidgetTest, TextWrapsAndIsNeverCut) {
    const std::string sentence = "按住 Option 点击箭头可展开原图标重新整理。";
    show(Text{.text = sentence + sentence + sentence}, 120, 400);
    const auto* label = widget_->findChild<QLabel*>();
    ASSERT_NE(label, nullptr);
    EXPECT_LE(label->width(), 120);
    const int narrow = label->height();
    widget_->resize(390, 400);
    settle();
    EXPECT_GT(narrow, label->height());
    EXPECT_GT(label->height(), 30);
}

TEST_F(ContentWidgetTest, ACommandSignInABoldHeadingIsBold) {
    const auto signOf = [](Weight weight) {
        return Text{.text = "⌘",
                    .font = {.size = 80.0, .weight = weight},
                    .foreground = Color{.base = Tone{.light = {0, 0, 0}, .dark = {0, 0, 0}}}};
    };
    const double regular = inkOf(signOf(Weight::Regular));
    EXPECT_GT(regular, 100);
    EXPECT_GT(inkOf(signOf(Weight::Bold)), 1.5 * regular);
}

TEST_F(ContentWidgetTest, AnEqualBodyRepaintsNothingAndCallsTheNewestAction) {
    std::string called;
    const auto body = [&called](const char* what) {
        return View(HStack{.children = {named("go", [&called, what] { called = what; })}});
    };
    show(body("old"));
    PaintCounter counter;
    widget_->installEventFilter(&counter);
    change(body("new"));
    EXPECT_EQ(counter.paints, 0);
    click(button("go"));
    EXPECT_EQ(called, "new");
    change(HStack{.children = {named("other")}});
    EXPECT_GT(counter.paints, 0);
}

TEST_F(ContentWidgetTest, AKeyKeepsTheWidgetWhenOthersComeAndGo) {
    const auto row = [](const std::vector<std::uint64_t>& keys) {
        std::vector<View> children;
        for (const auto each : keys) {
            children.push_back(named(std::to_string(each).c_str()).id(each));
        }
        return View(HStack{.children = children});
    };
    show(row({1, 2, 3}));
    const QPushButton* second = &button("2");
    const int before = second->x();
    change(row({3, 2}));
    EXPECT_EQ(&button("2"), second);
    EXPECT_NE(second->x(), before);
    EXPECT_THROW((void)button("1"), std::runtime_error);
}

TEST_F(ContentWidgetTest, AScrolledRowKeepsItsPlaceThroughUpdates) {
    const auto row = [](int count) {
        std::vector<View> children;
        for (int place = 0; place < count; ++place) {
            children.push_back(
                fixed(40, 28, std::to_string(place).c_str()).id(static_cast<std::uint64_t>(place)));
        }
        return View(HorizontalScroll{.content = HStack{.spacing = 3, .children = children}});
    };
    setLook([](Look& look) { look.reduceMotion = true; });
    show(row(50));
    QWidget* content = button("0").parentWidget();
    QWheelEvent wheel({10, 10}, {10, 10}, {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(content->parentWidget(), &wheel);
    EXPECT_EQ(content->x(), -72);
    change(row(60));
    EXPECT_EQ(content->x(), -72);
    change(row(3));
    EXPECT_EQ(content->x(), 0);
}

TEST_F(ContentWidgetTest, TabReachesControlsInTheirOrderAndBringsThemIntoView) {
    setLook([](Look& look) { look.reduceMotion = true; });
    std::vector<View> children;
    for (int place = 0; place < 20; ++place) {
        children.push_back(fixed(40, 28, std::to_string(place).c_str()));
    }
    show(HorizontalScroll{.content = HStack{.children = children}});
    QWidget* content = button("0").parentWidget();
    button("19").setFocus(Qt::TabFocusReason);
    settle();
    EXPECT_EQ(content->x(), -400);
    EXPECT_EQ(button("3").nextInFocusChain(), &button("4"));
}

TEST_F(ContentWidgetTest, ASwitchShowsTheValueOnly) {
    std::vector<bool> asked;
    const auto body = [&asked](bool isOn) {
        return View(Toggle{.label = "登录时启动", .isOn = isOn, .action = [&asked](bool on) {
                               asked.push_back(on);
                           }});
    };
    show(body(false));
    auto* toggle = widget_->findChild<QCheckBox*>();
    ASSERT_NE(toggle, nullptr);
    click(*toggle);
    EXPECT_EQ(asked, std::vector{true});
    EXPECT_FALSE(toggle->isChecked());
    change(body(true));
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_EQ(asked.size(), 1U);
}

TEST_F(ContentWidgetTest, ReturnPressesTheDefaultButtonAndEscapeTheWayOut) {
    std::string pressed;
    show(HStack{.children = {Button{.label = Text{.text = "back"},
                                    .action = [&pressed] { pressed = "back"; },
                                    .role = ButtonRole::Cancel},
                             Button{.label = Text{.text = "on"},
                                    .action = [&pressed] { pressed = "on"; },
                                    .isDefaultAction = true}}});
    key(Qt::Key_Return);
    EXPECT_EQ(pressed, "on");
    key(Qt::Key_Escape);
    EXPECT_EQ(pressed, "back");
}

TEST_F(ContentWidgetTest, ARightClickGoesToTheViewLaidOverAndALeftOneToTheButton) {
    int left = 0;
    int right = 0;
    show(View(Button{.label = View(Symbol{.name = "clock"}).frame({.width = 32, .height = 28}),
                     .action = [&left] { ++left; },
                     .style = ButtonStyle::Plain})
             .overlay(
                 Represented{std::make_shared<SecondRowRightClickCapture>([&right] { ++right; })})
             .accessibilityLabel("item"));
    click(button("item"), Qt::RightButton);
    EXPECT_EQ(right, 1);
    EXPECT_EQ(left, 0);
    click(button("item"));
    EXPECT_EQ(right, 1);
    EXPECT_EQ(left, 1);
}

TEST_F(ContentWidgetTest, AScreenReaderFindsNamesAndRoles) {
    show(VStack{.children = {Text{.text = "标题"}, Toggle{.label = "开关"},
                             View(Button{.label = Symbol{.name = "clock"}}).help("时钟")}});
    const auto roleAndName = [](QWidget* widget) {
        auto* interface = QAccessible::queryAccessibleInterface(widget);
        return std::pair(interface->role(), interface->text(QAccessible::Name));
    };
    EXPECT_EQ(roleAndName(widget_->findChild<QLabel*>()),
              std::pair(QAccessible::StaticText, QString("标题")));
    EXPECT_EQ(roleAndName(widget_->findChild<QCheckBox*>()),
              std::pair(QAccessible::CheckBox, QString("开关")));
    EXPECT_EQ(roleAndName(&button("时钟")), std::pair(QAccessible::Button, QString("时钟")));
}

TEST_F(ContentWidgetTest, AScreenReaderLosesWhatHasGone) {
    show(named("gone"));
    const auto id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&button("gone")));
    ASSERT_NE(QAccessible::accessibleInterface(id), nullptr);
    change(Text{.text = "x"});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST_F(ContentWidgetTest, AnAlertShowsOnceForEachOccasion) {
    const auto body = [](std::uint64_t occasion) {
        return View(Text{.text = "x"})
            .alert({.title = "登录时启动",
                    .message = "失败",
                    .button = {.label = "好", .role = ButtonRole::Cancel},
                    .isPresented = occasion > 0,
                    .occasion = occasion});
    };
    show(body(0));
    EXPECT_THROW((void)button("好"), std::runtime_error);
    change(body(1));
    click(button("好"));
    EXPECT_THROW((void)button("好"), std::runtime_error);
    change(body(1));
    EXPECT_THROW((void)button("好"), std::runtime_error);
    change(body(2));
    EXPECT_NO_THROW((void)button("好"));
}

TEST_F(ContentWidgetTest, ColoursFollowTheLookWhileRunning) {
    show(FilledShape{.outline = Rectangle(),
                     .fill = Color{.base = Tone{.light = {10, 20, 30}, .dark = {200, 210, 220}}}});
    EXPECT_EQ(colourAt(50, 50), QColor(10, 20, 30));
    setLook([](Look& look) { look.isDark = true; });
    settle();
    EXPECT_EQ(colourAt(50, 50), QColor(200, 210, 220));
}

TEST_F(ContentWidgetTest, TheSettingsFitTheirLeastSize) {
    FakeLoginItem loginItem(journal_);
    host(std::make_shared<SettingsView>(application_, loginItem, [] {}), 600, 520);
    EXPECT_EQ(widget_->leastSize(), QSize(600, 520));
    EXPECT_TRUE(button("退出 Pelistra").isVisible());
    for (const auto* label : widget_->findChildren<QLabel*>()) {
        EXPECT_LE(label->geometry().right(), 600) << label->text().toStdString();
    }
}

TEST_F(ContentWidgetTest, TheOnboardingWalksThroughItsStepsByReturn) {
    FakeLoginItem loginItem(journal_);
    bool hasEnded = false;
    setLook([](Look& look) { look.reduceMotion = true; });
    host(std::make_shared<OnboardingView>(loginItem, [&hasEnded](bool) { hasEnded = true; }), 680,
         500);
    for (int step = 0; step < 3; ++step) {
        EXPECT_NO_THROW((void)button("继续"));
        key(Qt::Key_Return);
    }
    EXPECT_NO_THROW((void)button("开始使用 Pelistra"));
    EXPECT_NO_THROW((void)button("返回"));
    key(Qt::Key_Return);
    EXPECT_TRUE(hasEnded);
}

} // namespace
} // namespace pelistra::linux
