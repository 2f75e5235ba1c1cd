#include "tests/ui/ViewQueries.h"
#include "ui/Nodes.h"

#include <gtest/gtest.h>

#include <memory>

namespace pelistra::testing {
namespace {

using namespace ui;

class EmptyImage final : public Image {
public:
    [[nodiscard]] Size size() const override { return {}; }
};

class OneRepresentable final : public Representable {
public:
    [[nodiscard]] std::unique_ptr<EventView> makeView(const Application& /*of*/) const override {
        return nullptr;
    }
    void updateView(EventView& /*view*/) const override {}
};

class OtherRepresentable final : public Representable {
public:
    [[nodiscard]] std::unique_ptr<EventView> makeView(const Application& /*of*/) const override {
        return nullptr;
    }
    void updateView(EventView& /*view*/) const override {}
};

TEST(View, CopiesShareTheirTree) {
    const View view = Text{.text = "a"};
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tested
    const View copy = view;
    EXPECT_EQ(&copy.node(), &view.node());
    EXPECT_TRUE(copy == view);
}

TEST(View, EqualWhenMadeAlike) {
    const auto make = [](const char* text) {
        return View(HStack{.spacing = 3, .children = {Text{.text = text}, Spacer()}})
            .padding(Edges::all(4))
            .help("help");
    };
    EXPECT_TRUE(make("a") == make("a"));
    EXPECT_FALSE(make("a") == make("b"));
}

TEST(View, DiffersInKind) {
    EXPECT_FALSE(View(HStack()) == View(VStack()));
    EXPECT_FALSE(View(Spacer()) == View(Divider()));
}

TEST(View, TextDiffersInEveryField) {
    const Text text = {.text = "a"};
    EXPECT_FALSE(View(text) == View(Text{.text = "b"}));
    EXPECT_FALSE(View(text) == View(Text{.text = "a", .font = {.size = TextStyle::Caption}}));
    EXPECT_FALSE(View(text) == View(Text{.text = "a", .font = {.weight = Weight::Medium}}));
    EXPECT_FALSE(View(text) == View(Text{.text = "a", .foreground = Color{.base = Role::Red}}));
    EXPECT_FALSE(View(text) == View(Text{.text = "a", .lineLimit = 1}));
    EXPECT_FALSE(View(text) ==
                 View(Text{.text = "a", .multilineAlignment = TextAlignment::Center}));
}

TEST(View, ButtonDiffersInLookButNotInAction) {
    const auto button = [](ButtonStyle style, ButtonRole role, ControlSize size, bool isDefault) {
        return View(Button{.label = Text{.text = "a"},
                           .action = [] {},
                           .style = style,
                           .role = role,
                           .size = size,
                           .isDefaultAction = isDefault});
    };
    const View plain = button(ButtonStyle::Plain, ButtonRole::Regular, ControlSize::Regular, false);
    EXPECT_TRUE(plain == View(Button{.label = Text{.text = "a"}, .style = ButtonStyle::Plain}));
    EXPECT_FALSE(plain ==
                 button(ButtonStyle::Borderless, ButtonRole::Regular, ControlSize::Regular, false));
    EXPECT_FALSE(plain ==
                 button(ButtonStyle::Plain, ButtonRole::Destructive, ControlSize::Regular, false));
    EXPECT_FALSE(plain ==
                 button(ButtonStyle::Plain, ButtonRole::Regular, ControlSize::Large, false));
    EXPECT_FALSE(plain ==
                 button(ButtonStyle::Plain, ButtonRole::Regular, ControlSize::Regular, true));
}

TEST(View, ToggleDiffersInStateAndLabel) {
    const View off = Toggle{.label = "a", .action = [](bool) {}};
    EXPECT_TRUE(off == View(Toggle{.label = "a"}));
    EXPECT_FALSE(off == View(Toggle{.label = "a", .isOn = true}));
    EXPECT_FALSE(off == View(Toggle{.label = "b"}));
}

TEST(View, PicturesAreEqualWhenTheyAreTheSameImage) {
    const auto image = std::make_shared<EmptyImage>();
    EXPECT_TRUE(View(Picture{image}) == View(Picture{image}));
    EXPECT_FALSE(View(Picture{image}) == View(Picture{std::make_shared<EmptyImage>()}));
}

TEST(View, RepresentedViewsAreEqualWhenOfOneType) {
    const View one = Represented{std::make_shared<OneRepresentable>()};
    EXPECT_TRUE(one == View(Represented{std::make_shared<OneRepresentable>()}));
    EXPECT_FALSE(one == View(Represented{std::make_shared<OtherRepresentable>()}));
}

TEST(View, AlertDiffersInOccasion) {
    const View content = Spacer();
    const Alert alert = {.title = "t", .isPresented = true, .occasion = 1};
    Alert again = alert;
    again.occasion = 2;
    EXPECT_TRUE(content.alert(alert) == content.alert(alert));
    EXPECT_FALSE(content.alert(alert) == content.alert(again));
}

TEST(View, EachModifierWrapsTheContentInItsNode) {
    const View content = Text{.text = "a"};
    const View other = Spacer();
    const Outline outline = RoundedRectangle{.cornerRadius = 8};

    const auto padded = asNode<Padding>(content.padding({.leading = 9}));
    EXPECT_EQ(padded.edges, (Edges{.top = 0, .leading = 9, .bottom = 0, .trailing = 0}));
    EXPECT_EQ(&padded.content.node(), &content.node());

    const auto framed = asNode<Frame>(content.frame({.maxWidth = infinity}));
    EXPECT_EQ(framed.limits.maxWidth, infinity);
    EXPECT_EQ(framed.limits.width, std::nullopt);

    const auto backed = asNode<Background>(content.background(other, true));
    EXPECT_TRUE(backed.behind == other);
    EXPECT_TRUE(backed.content == content);
    EXPECT_TRUE(backed.ignoresSafeArea);
    EXPECT_FALSE(asNode<Background>(content.background(other)).ignoresSafeArea);

    const auto overlaid = asNode<Overlay>(content.overlay(other));
    EXPECT_TRUE(overlaid.above == other);
    EXPECT_TRUE(overlaid.content == content);

    EXPECT_EQ(asNode<ContentShape>(content.contentShape(outline)).outline, outline);
    EXPECT_EQ(asNode<Help>(content.help("help")).text, "help");
    EXPECT_EQ(asNode<AccessibilityLabel>(content.accessibilityLabel("said")).text, "said");
    EXPECT_EQ(asNode<Identified>(content.id(std::uint64_t{7})).key, Key(std::uint64_t{7}));
    EXPECT_EQ(asNode<Entering>(content.transition({.scale = 0.98})).transition.scale, 0.98);
    const auto animated = asNode<Animated>(content.animation(EaseOut{.seconds = 0.12}, 3));
    EXPECT_EQ(animated.animation, Animation(EaseOut{.seconds = 0.12}));
    EXPECT_EQ(animated.value, 3);
    EXPECT_EQ(asNode<WithAlert>(content.alert({.title = "title"})).alert.title, "title");
}

TEST(View, ReadAsAnotherKindIsNothing) {
    const View view = Spacer();
    EXPECT_NE(view.as<Spacer>(), nullptr);
    EXPECT_EQ(view.as<Divider>(), nullptr);
}

TEST(Action, EmptyDoesNothing) {
    const Action action;
    EXPECT_FALSE(action);
    action();
    const Action ofEmptyFunction = std::function<void()>();
    EXPECT_FALSE(ofEmptyFunction);
    ofEmptyFunction();
}

TEST(Action, CallsWithItsArguments) {
    bool told = false;
    const ToggleAction action = [&told](bool on) { told = on; };
    action(true);
    EXPECT_TRUE(told);
}

} // namespace
} // namespace pelistra::testing
