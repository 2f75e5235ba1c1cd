#include "overflow/OverflowStore.h"
#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/views/Scene.h"
#include "secondrow/SecondRowView.h"
#include "tests/secondrow/SecondRowFixture.h"
#include "tests/ui/InventedMeasures.h"
#include "ui/OnboardingView.h"
#include "ui/SettingsView.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

// Where the arrangement puts what the organiser's windows show, there Qt has it.
namespace pelistra::linux {
namespace {

using pelistra::testing::SecondRowFixture;

class FramesTest : public SecondRowFixture {
protected:
    void expectFrames(const std::shared_ptr<ui::Content>& content, const QSize& size) {
        ContentWidget widget(content, services_);
        widget.resize(size);
        widget.show();
        const ui::View body = content->body();
        const auto arrangement = ui::arranged(
            body, {.size = {.width = double(size.width()), .height = double(size.height())}},
            measures_);
        ASSERT_FALSE(arrangement.elements.empty());
        EXPECT_EQ(shownWidgets(widget), expectedWidgets(arrangement.elements));

        Scene scene(widget, services_);
        ElementList elements;
        elements.update(arrangement.elements, scene, nullptr, {.host = &widget});
        std::size_t place = 0;
        elements.forEach([&](Element& element) {
            ASSERT_LT(place, arrangement.elements.size());
            compare(arrangement.elements[place++], element);
        });
        EXPECT_EQ(place, arrangement.elements.size());
    }

    pelistra::testing::InventedMeasures measures_;

private:
    // What a user can reach or have read, and where in the coordinates around it.
    using WidgetPlace = std::tuple<std::string, int, int, int, int>;

    static WidgetPlace placeOf(const char* kind, const QRect& frame) {
        return {kind, frame.x(), frame.y(), frame.width(), frame.height()};
    }

    template <class Kind>
    static void addShown(const char* kind, const QWidget& widget,
                         std::vector<WidgetPlace>& places) {
        for (const Kind* each : widget.findChildren<Kind*>()) {
            places.push_back(placeOf(kind, each->geometry()));
        }
    }

    static std::vector<WidgetPlace> shownWidgets(const QWidget& widget) {
        std::vector<WidgetPlace> places;
        addShown<QLabel>("text", widget, places);
        addShown<QPushButton>("button", widget, places);
        addShown<QCheckBox>("toggle", widget, places);
        std::ranges::sort(places);
        return places;
    }

    static void addExpected(const std::vector<ui::Placed>& placed,
                            std::vector<WidgetPlace>& places) {
        for (const ui::Placed& each : placed) {
            const QRect frame = qRect(each.frame).toAlignedRect();
            if (each.view.as<ui::Button>() != nullptr) {
                places.push_back(placeOf("button", frame));
            } else if (each.view.as<ui::Toggle>() != nullptr) {
                places.push_back(placeOf("toggle", frame));
            } else {
                if (each.view.as<ui::Text>() != nullptr) {
                    places.push_back(placeOf("text", frame));
                }
                addExpected(each.children, places);
            }
        }
    }

    static std::vector<WidgetPlace> expectedWidgets(const std::vector<ui::Placed>& placed) {
        std::vector<WidgetPlace> places;
        addExpected(placed, places);
        std::ranges::sort(places);
        return places;
    }

    static void compare(const ui::Placed& placed, Element& element) {
        EXPECT_EQ(element.key(), placed.key);
        EXPECT_EQ(element.frame(), qRect(placed.frame)) << placed.key;
        std::size_t place = 0;
        element.forEachChild([&](Element& child) {
            ASSERT_LT(place, placed.children.size());
            compare(placed.children[place++], child);
        });
        EXPECT_EQ(place, placed.children.size()) << placed.key;
    }

    Published<Look> look_;
    ViewServices services_ = {
        .mainQueue = fakes_.mainQueue,
        .application = fakes_.application,
        .handleEvent = [](const Event&, const std::function<void()>& block) { block(); },
        .look = look_,
        .measures = &measures_};
};

TEST_F(FramesTest, TheSettings) {
    const auto view =
        std::make_shared<ui::SettingsView>(fakes_.application, fakes_.loginItem, [] {});
    expectFrames(view, {680, 600});
    // Higher than its place.
    measures_.scrollerWidth = 14;
    expectFrames(view, {600, 120});
}

TEST_F(FramesTest, EveryStepOfTheGuide) {
    const auto view = std::make_shared<ui::OnboardingView>(fakes_.loginItem, [](bool) {});
    for (int step = 0; step < 4; ++step) {
        view->move(step);
        expectFrames(view, {760, 560});
    }
}

TEST_F(FramesTest, TheSecondRow) {
    const auto view =
        std::make_shared<SecondRowView>(store_, [](const auto&) {}, [](const auto&) {}, [] {});
    const QSize size(280, static_cast<int>(SecondRowView::preferredHeight));
    store_->message.set("消息");
    expectFrames(view, size);
    auto items = pelistra::testing::items(9);
    items.front().applicationIcon =
        fakes_.images.drawn({.width = 16, .height = 32}, [](auto&, const auto&) { return true; });
    store_->items.set(items);
    expectFrames(view, size);
}

} // namespace
} // namespace pelistra::linux
