#include "ui/Arrangement.h"

#include "tests/platform/FakeImages.h"
#include "tests/ui/Arranged.h"

#include <limits>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const View shape = FilledShape{.outline = Rectangle(), .fill = Color{}};

View words(std::size_t bytes) {
    return Text{.text = std::string(bytes, 'x')};
}

class ArrangementTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<Placed> elements(const View& view, double width = 200,
                                               double height = 100) const {
        return arranged(view,
                        {.size = {.width = width, .height = height},
                         .scale = scale_,
                         .coveredTop = coveredTop_},
                        measures_)
            .elements;
    }
    // From back to front, without what is inside of others.
    [[nodiscard]] std::vector<Area> frames(const View& view, double width = 200,
                                           double height = 100) const {
        return framesOf(elements(view, width, height));
    }
    [[nodiscard]] Size size(const View& view, const Proposal& offered = {}) const {
        return measured(view, offered, scale_, measures_);
    }

    InventedMeasures measures_;
    double scale_ = 1;
    double coveredTop_ = 0;
};

TEST_F(ArrangementTest, ARowServesRigidChildrenFirst) {
    const View row = HStack{.spacing = 10, .children = {box(30, 20), Spacer(), box(40, 60)}};
    EXPECT_THAT(frames(row), ElementsAre(area(0, 40, 30, 20), area(160, 20, 40, 60)));
    const View flexible = HStack{.spacing = 10, .children = {shape, words(10), shape}};
    EXPECT_THAT(frames(flexible),
                ElementsAre(area(0, 0, 75, 100), area(85, 45, 30, 10), area(125, 0, 75, 100)));
}

TEST_F(ArrangementTest, ATextGivesWayBeforeItIsCut) {
    EXPECT_THAT(frames(HStack{.children = {words(60), box(80, 10)}}),
                ElementsAre(area(0, 40, 120, 20), area(120, 45, 80, 10)));
}

TEST_F(ArrangementTest, StacksAlignTheirChildren) {
    const std::vector<View> children = {box(30, 20), box(10, 40)};
    EXPECT_THAT(frames(HStack{.alignment = VerticalAlignment::Top, .children = children}, 40, 40),
                ElementsAre(area(0, 0, 30, 20), area(30, 0, 10, 40)));
    EXPECT_THAT(frames(HStack{.children = children}, 40, 40),
                ElementsAre(area(0, 10, 30, 20), area(30, 0, 10, 40)));
    EXPECT_THAT(
        frames(HStack{.alignment = VerticalAlignment::Bottom, .children = children}, 40, 40),
        ElementsAre(area(0, 20, 30, 20), area(30, 0, 10, 40)));
    EXPECT_THAT(
        frames(VStack{.alignment = HorizontalAlignment::Leading, .children = children}, 30, 60),
        ElementsAre(area(0, 0, 30, 20), area(0, 20, 10, 40)));
    EXPECT_THAT(frames(VStack{.children = children}, 30, 60),
                ElementsAre(area(0, 0, 30, 20), area(10, 20, 10, 40)));
    EXPECT_THAT(
        frames(VStack{.alignment = HorizontalAlignment::Trailing, .children = children}, 30, 60),
        ElementsAre(area(0, 0, 30, 20), area(20, 20, 10, 40)));
    EXPECT_THAT(frames(ZStack{.children = children}, 30, 40),
                ElementsAre(area(0, 10, 30, 20), area(10, 0, 10, 40)));
}

TEST_F(ArrangementTest, WhatIsSmallerThanTheSurfaceLiesInItsMiddle) {
    EXPECT_THAT(frames(box(50, 20)), ElementsAre(area(75, 40, 50, 20)));
    EXPECT_THAT(frames(box(300, 120)), ElementsAre(area(-50, -10, 300, 120)));
}

TEST_F(ArrangementTest, PaddingLiesAroundItsContent) {
    const View padded = shape.padding({.top = 1, .leading = 2, .bottom = 3, .trailing = 4});
    EXPECT_THAT(frames(padded), ElementsAre(area(2, 1, 194, 96)));
    EXPECT_EQ(size(padded, {.width = 3, .height = 3}), (Size{.width = 6, .height = 4}));
    EXPECT_THAT(frames(shape.padding(Edges::all(300))), ElementsAre(area(100, 50, 0, 0)));
}

TEST_F(ArrangementTest, AFrameHoldsAndAlignsItsContent) {
    const View fills = box(30, 20).frame({.maxWidth = infinity, .maxHeight = infinity});
    EXPECT_THAT(frames(fills), ElementsAre(area(85, 40, 30, 20)));
    const View corner =
        box(30, 20).frame({.maxWidth = infinity,
                           .minHeight = 60,
                           .alignment = {.horizontal = HorizontalAlignment::Trailing,
                                         .vertical = VerticalAlignment::Bottom}});
    EXPECT_THAT(frames(corner), ElementsAre(area(170, 60, 30, 20)));
    EXPECT_EQ(size(words(40).frame({.width = 60})), (Size{.width = 60, .height = 20}));
    EXPECT_EQ(size(box(30, 20).frame({.minWidth = 50}), {.width = 40, .height = 40}),
              (Size{.width = 50, .height = 20}));
    EXPECT_EQ(size(box(30, 20).frame({.maxWidth = 25}), {.width = 40, .height = 40}),
              (Size{.width = 25, .height = 20}));
}

// Nobody who limits a text expects it to be wider only because nobody has said how wide it may be.
TEST_F(ArrangementTest, AFiniteMaximumHoldsWhereNothingIsOffered) {
    const FrameLimits limits = {.maxWidth = 60};
    EXPECT_EQ(size(words(40).frame(limits)), (Size{.width = 60, .height = 20}));
    // It is no wish: what would be smaller stays so.
    EXPECT_EQ(size(words(10).frame(limits)), (Size{.width = 30, .height = 10}));
    EXPECT_EQ(size(shape.frame(limits)), (Size{.width = 10, .height = 10}));
    EXPECT_EQ(size(box(10, 200).frame({.maxHeight = 50})), (Size{.width = 10, .height = 50}));
}

// What is larger than it was meant to be can still be read; what is smaller cannot.
TEST_F(ArrangementTest, AMinimumIsStrongerThanAMaximumBelowIt) {
    const FrameLimits limits = {.minWidth = 80, .maxWidth = 50};
    for (const double offered : {0.0, 60.0, 100.0}) {
        EXPECT_EQ(size(shape.frame(limits), {.width = offered, .height = 10}),
                  (Size{.width = 80, .height = 10}));
    }
    EXPECT_EQ(size(shape.frame(limits)).width, 80);
    EXPECT_THAT(frames(shape.frame(limits)), ElementsAre(area(60, 0, 80, 100)));
}

// The place of a frame is no more than it was measured with: its limits go on holding.
TEST_F(ArrangementTest, TheContentOfAFrameIsPlacedWithinTheFramesLimits) {
    const View limited = shape.frame({.maxWidth = 40, .maxHeight = 30});
    EXPECT_THAT(frames(View(ZStack{.children = {box(100, 80), limited}})),
                ElementsAre(area(50, 10, 100, 80), area(80, 35, 40, 30)));
    EXPECT_THAT(
        frames(words(40).frame({.maxWidth = 60}).padding(Edges::all(5)).background(shape), 70, 30),
        ElementsAre(area(0, 0, 70, 30), area(5, 5, 60, 20)));
    EXPECT_THAT(frames(shape.frame({.maxWidth = 40}).transition({})).size(), 1);
}

TEST_F(ArrangementTest, LayersTakeTheSizeOfTheContent) {
    const View layered = box(40, 20).background(shape).overlay(box(60, 10));
    EXPECT_EQ(size(layered), (Size{.width = 40, .height = 20}));
    EXPECT_THAT(frames(layered),
                ElementsAre(area(80, 40, 40, 20), area(80, 40, 40, 20), area(70, 45, 60, 10)));
}

TEST_F(ArrangementTest, OnlyABackgroundReachesUnderTheTitleBar) {
    coveredTop_ = 30;
    const View fills = shape.frame({.maxWidth = infinity, .maxHeight = infinity});
    EXPECT_THAT(frames(fills.background(shape, true)),
                ElementsAre(area(0, 0, 200, 100), area(0, 30, 200, 70)));
    EXPECT_THAT(frames(fills.background(shape)),
                ElementsAre(area(0, 30, 200, 70), area(0, 30, 200, 70)));
    const View moving = fills.background(shape, true).animation(EaseOut{}, 0);
    EXPECT_THAT(frames(moving), ElementsAre(area(0, 0, 200, 100)));
    EXPECT_THAT(framesOf(elements(moving).at(0).children),
                ElementsAre(area(0, 0, 200, 100), area(0, 30, 200, 70)));
    EXPECT_THAT(frames(fills.background(shape, true).padding(Edges::all(5))),
                ElementsAre(area(5, 35, 190, 60), area(5, 35, 190, 60)));
}

TEST_F(ArrangementTest, LeavesTakeWhatTheyNeedOrWhatTheyAreOffered) {
    const Proposal offered = {.width = 40, .height = 30};
    EXPECT_EQ(size(words(20), offered), (Size{.width = 39, .height = 20}));
    EXPECT_EQ(size(Symbol{.name = "a", .font = {.size = 18.0}}, offered),
              (Size{.width = 18, .height = 18}));
    EXPECT_EQ(size(shape, offered), (Size{.width = 40, .height = 30}));
    EXPECT_EQ(size(StrokedShape{}, offered), (Size{.width = 40, .height = 30}));
    EXPECT_EQ(size(shape), (Size{.width = 10, .height = 10}));
    EXPECT_EQ(size(Spacer(), offered), (Size{.width = 40, .height = 30}));
    EXPECT_EQ(size(Divider(), offered), (Size{.width = 40, .height = 1}));
    EXPECT_THAT(frames(HStack{.children = {Divider(), Spacer()}}), ElementsAre(area(0, 0, 1, 100)));
}

TEST_F(ArrangementTest, APictureKeepsItsShape) {
    const View picture = Picture{std::make_shared<FakeImage>(Size{.width = 44, .height = 22})};
    EXPECT_EQ(size(picture, {.width = 32, .height = 28}), (Size{.width = 32, .height = 16}));
    EXPECT_EQ(size(picture, {.width = 400, .height = 28}), (Size{.width = 56, .height = 28}));
    EXPECT_EQ(size(picture), (Size{.width = 44, .height = 22}));
    EXPECT_EQ(size(Picture{}, {.width = 32, .height = 28}), Size());
    const View flat = Picture{std::make_shared<FakeImage>(Size{.width = 44, .height = 0})};
    EXPECT_EQ(size(flat, {.width = 32, .height = 28}), Size());
}

TEST_F(ArrangementTest, AButtonLiesAroundItsLabel) {
    const auto placed = elements(Button{.label = words(20)});
    EXPECT_THAT(framesOf(placed), ElementsAre(area(66, 41, 68, 18)));
    EXPECT_THAT(framesOf(placed.at(0).children), ElementsAre(area(70, 45, 60, 10)));
    // No narrower than its style is.
    EXPECT_THAT(frames(Button{.label = words(1)}), ElementsAre(area(75, 41, 50, 18)));
}

class NativeButtons final : public InventedMeasures {
public:
    [[nodiscard]] std::optional<Size> nativeButton(const Button& button) const override {
        return button.label.as<Text>() != nullptr ? std::optional(Size{.width = 70, .height = 22})
                                                  : std::nullopt;
    }
};

TEST_F(ArrangementTest, ANativeButtonIsALeaf) {
    const NativeButtons measures;
    const View both = HStack{.children = {Button{.label = words(5)}, Button{.label = box(9, 9)}}};
    const auto placed = arranged(both, {.size = {.width = 200, .height = 100}}, measures).elements;
    EXPECT_THAT(framesOf(placed), ElementsAre(area(40, 39, 70, 22), area(110, 42, 50, 17)));
    EXPECT_THAT(placed.at(0).children, IsEmpty());
    EXPECT_THAT(framesOf(placed.at(1).children), ElementsAre(area(131, 46, 9, 9)));
}

TEST_F(ArrangementTest, ASwitchStandsAtTheEndOfItsLabel) {
    const auto placed = elements(Toggle{.label = "0123456789"});
    EXPECT_THAT(framesOf(placed), ElementsAre(area(65, 42, 70, 16)));
    EXPECT_THAT(framesOf(placed.at(0).children), ElementsAre(area(65, 45, 30, 10)));
    EXPECT_EQ(placed.at(0).toggle, area(105, 42, 30, 16));
}

TEST_F(ArrangementTest, AScrolledRowHasCoordinatesOfItsOwn) {
    const View row = HStack{.spacing = 3, .children = {box(150, 20), box(150, 30)}};
    const auto placed = elements(View(HorizontalScroll{.content = row}).padding(Edges::all(10)));
    EXPECT_THAT(framesOf(placed), ElementsAre(area(10, 35, 180, 30)));
    EXPECT_EQ(placed.at(0).content, (Size{.width = 303, .height = 30}));
    EXPECT_THAT(framesOf(placed.at(0).children),
                ElementsAre(area(0, 5, 150, 20), area(153, 0, 150, 30)));
}

View form() {
    return GroupedForm{
        .sections = {{.title = "one", .rows = {box(30, 20), box(30, 40)}},
                     {.title = "two",
                      .rows = {Toggle{.label = "12345"}, Button{.label = words(10)}, words(100)}}}};
}

TEST_F(ArrangementTest, AFormIsAColumnOfCards) {
    const auto placed = elements(form(), 340, 300);
    EXPECT_THAT(framesOf(placed), ElementsAre(area(0, 0, 340, 300)));
    EXPECT_THAT(framesOf(placed.at(0).children),
                ElementsAre(area(28, 10, 9, 10), area(28, 31, 30, 20), area(28, 63, 30, 40),
                            area(28, 124, 9, 10), area(20, 139, 300, 28), area(20, 167, 300, 22),
                            area(28, 195, 282, 20)));
    EXPECT_THAT(placed.at(0).cards,
                ElementsAre(Card{.area = area(20, 25, 300, 84), .lines = {57}},
                            Card{.area = area(20, 139, 300, 82), .lines = {167, 189}}));
    EXPECT_EQ(placed.at(0).content, (Size{.width = 340, .height = 251}));
}

TEST_F(ArrangementTest, ControlsTakeARowUpToItsEdges) {
    const auto all = elements(form(), 340, 300).at(0).children;
    const Placed& toggle = all.at(4);
    EXPECT_TRUE(toggle.isFormRow);
    EXPECT_THAT(framesOf(toggle.children), ElementsAre(area(28, 148, 15, 10)));
    EXPECT_EQ(toggle.toggle, area(282, 145, 30, 16));
    EXPECT_TRUE(all.at(5).isFormRow);
    EXPECT_THAT(framesOf(all.at(5).children), ElementsAre(area(28, 173, 30, 10)));
    EXPECT_FALSE(all.at(6).isFormRow);
}

TEST_F(ArrangementTest, CardsAreBoundedAndAScrollerTakesOfTheirWidth) {
    const auto wide = elements(form(), 1000, 300).at(0);
    EXPECT_EQ(wide.cards.at(0).area, area(250, 25, 500, 84));
    measures_.scrollerWidth = 16;
    EXPECT_EQ(elements(form(), 340, 251).at(0).content.width, 340);
    EXPECT_EQ(elements(form(), 340, 250).at(0).content.width, 324);
}

TEST_F(ArrangementTest, WhatDoesSomethingToItsContentIsAnElementAroundIt) {
    const View view = box(10, 10)
                          .padding(Edges::all(5))
                          .transition({.scale = 0.9})
                          .animation(EaseOut{.seconds = 1}, 3);
    auto placed = elements(view);
    for (const auto& isKind : {+[](const View& each) { return each.as<Animated>() != nullptr; },
                               +[](const View& each) { return each.as<Entering>() != nullptr; }}) {
        ASSERT_THAT(framesOf(placed), ElementsAre(area(90, 40, 20, 20)));
        EXPECT_TRUE(isKind(placed.at(0).view));
        placed = std::vector(placed.at(0).children);
    }
    EXPECT_THAT(framesOf(placed), ElementsAre(area(95, 45, 10, 10)));
}

TEST_F(ArrangementTest, WhatIsSaidIsSaidOfTheControlAndNotOfItsLabel) {
    const View said = View(HStack{.children = {Button{.label = words(2)}, words(3)}})
                          .help("outer")
                          .accessibilityLabel("name");
    const auto placed = elements(View(VStack{.children = {said, words(4)}}));
    EXPECT_EQ(placed.at(0).help, "outer");
    EXPECT_EQ(placed.at(0).accessibilityLabel, "name");
    EXPECT_EQ(placed.at(0).children.at(0).help, "");
    EXPECT_EQ(placed.at(1).accessibilityLabel, "name");
    EXPECT_EQ(placed.at(2).help, "");
}

TEST_F(ArrangementTest, TheAlertIsHandedOn) {
    const View view = shape.alert({.title = "title", .isPresented = true, .occasion = 2});
    const auto arrangement = arranged(view, {}, measures_);
    ASSERT_TRUE(arrangement.alert);
    EXPECT_EQ(arrangement.alert->occasion, 2);
    EXPECT_EQ(arranged(shape, {}, measures_).alert, std::nullopt);
}

// Pixels

TEST_F(ArrangementTest, EdgesLieOnDevicePixelsAndNeighboursMeet) {
    const View three = HStack{.children = {shape, shape, shape}};
    EXPECT_THAT(frames(three, 100, 7),
                ElementsAre(area(0, 0, 33, 7), area(33, 0, 34, 7), area(67, 0, 33, 7)));
    scale_ = 2;
    EXPECT_THAT(frames(three, 100, 7),
                ElementsAre(area(0, 0, 33.5, 7), area(33.5, 0, 33, 7), area(66.5, 0, 33.5, 7)));
    scale_ = 1.5;
    for (const Area& frame : frames(three, 100, 7)) {
        for (const double edge : {frame.minX(), frame.maxX(), frame.minY(), frame.maxY()}) {
            EXPECT_NEAR(edge * 1.5, std::round(edge * 1.5), 1e-9) << edge;
        }
    }
}

TEST_F(ArrangementTest, WhatIsCentredMovesToTheNextPixelAndKeepsItsSize) {
    EXPECT_THAT(frames(box(21, 9), 40, 20), ElementsAre(area(10, 6, 21, 9)));
    scale_ = 2;
    EXPECT_THAT(frames(box(21, 9), 40, 20), ElementsAre(area(9.5, 5.5, 21, 9)));
    scale_ = 1.5;
    EXPECT_THAT(frames(box(22, 10), 40, 20), ElementsAre(area(14 / 1.5, 8 / 1.5, 22, 10)));
}

TEST_F(ArrangementTest, LeavesAreRoundedUpSoThatNothingIsCut) {
    scale_ = 1.5;
    const Size text = size(words(1).frame({}));
    EXPECT_DOUBLE_EQ(text.width, 5 / 1.5);
    EXPECT_DOUBLE_EQ(text.height, 10);
}

// Whatever it is handed

TEST_F(ArrangementTest, EmptyViewsTakeNothing) {
    for (const View& view : {View(HStack{}), View(VStack{.spacing = 9}), View(ZStack{}),
                             View(HorizontalScroll{.content = HStack{}}), View(Text{})}) {
        EXPECT_EQ(size(view).width, 0);
        EXPECT_LE(frames(view).size(), 1);
    }
    const auto placed = elements(GroupedForm{});
    EXPECT_THAT(placed.at(0).children, IsEmpty());
    EXPECT_THAT(placed.at(0).cards, IsEmpty());
    EXPECT_THAT(frames(Button{.label = HStack{}}), ElementsAre(area(75, 46, 50, 8)));
}

TEST_F(ArrangementTest, OffersThatAreNoLengthAreNone) {
    const View fills = shape.frame({.maxWidth = infinity, .maxHeight = infinity});
    EXPECT_THAT(frames(fills, nan, -5), ElementsAre(area(0, 0, 0, 0)));
    EXPECT_EQ(size(fills, {.width = nan, .height = -5}), Size());
    EXPECT_EQ(size(words(20), {.width = -5}), (Size{.width = 3, .height = 200}));
    // Without an end a view may choose.
    EXPECT_THAT(frames(fills, infinity, infinity), ElementsAre(area(0, 0, 10, 10)));
}

TEST_F(ArrangementTest, NumbersThatAreNoneDoNotSpread) {
    const View view =
        VStack{.spacing = nan,
               .children = {shape.padding({.top = nan, .leading = infinity, .bottom = -infinity}),
                            box(nan, infinity), shape.frame({.minWidth = nan, .maxWidth = nan}),
                            shape.frame({.minWidth = infinity, .maxWidth = -3})}};
    for (const Area& frame : frames(view)) {
        for (const double number : {frame.minX(), frame.minY(), frame.width(), frame.height()}) {
            EXPECT_TRUE(std::isfinite(number));
        }
        EXPECT_GE(frame.size.width, 0);
        EXPECT_GE(frame.size.height, 0);
    }
}

class BrokenMeasures final : public InventedMeasures {
public:
    [[nodiscard]] Size text(const Text& /*text*/, std::optional<double> /*width*/) const override {
        return {.width = nan, .height = -7};
    }
};

TEST_F(ArrangementTest, ALeafThatCannotSayItsSizeHasNone) {
    const BrokenMeasures measures;
    EXPECT_EQ(measured(HStack{.children = {words(3), box(5, 5)}}, {}, 1, measures),
              (Size{.width = 5, .height = 5}));
}

TEST_F(ArrangementTest, HugeViewsAreArranged) {
    constexpr int many = 5000;
    const View row = HStack{.spacing = 1, .children = std::vector<View>(many, box(9, 9))};
    const auto placed = elements(HorizontalScroll{.content = row});
    EXPECT_EQ(placed.at(0).content.width, (10 * many) - 1);
    EXPECT_EQ(placed.at(0).children.back().frame, area((10 * many) - 10, 0, 9, 9));
    View deep = words(1);
    for (int level = 0; level < 200; ++level) {
        deep = View(level % 2 == 0 ? View(HStack{.children = {deep}})
                                   : View(VStack{.children = {deep, Spacer()}}));
    }
    EXPECT_EQ(frames(deep).size(), 1);
    EXPECT_EQ(size(std::vector<View>(1, box(1e300, 1e300)).front()).width, 1e9);
}

// Identity

std::vector<std::string> keys(const std::vector<Placed>& elements) {
    std::vector<std::string> found;
    for (const auto& each : elements) {
        found.push_back(each.key);
    }
    return found;
}

class IdentityTest : public ArrangementTest {
protected:
    struct Kept {
        std::string name;
        [[nodiscard]] const std::string& key() const { return name; }
    };
    // Of which child of before each child of after is the continuation; -1 for a new one.
    [[nodiscard]] std::vector<int> origins(const std::vector<View>& before,
                                           const std::vector<View>& after) const {
        const auto old = keys(elements(HStack{.children = before}));
        std::vector<std::shared_ptr<Kept>> widgets;
        for (const auto& key : old) {
            widgets.push_back(std::make_shared<Kept>(Kept{key}));
        }
        const auto copies = widgets;
        const auto now = continued(widgets, elements(HStack{.children = after}),
                                   [](const Placed&) { return std::make_shared<Kept>(); });
        std::vector<int> found;
        for (const auto& each : now) {
            const auto place = std::ranges::find(copies, each);
            found.push_back(place == copies.end() ? -1 : static_cast<int>(place - copies.begin()));
        }
        return found;
    }
};

View keyed(std::uint64_t key, std::size_t bytes = 1) {
    return words(bytes).id(key);
}

TEST_F(IdentityTest, KeysFollowTheirViewWhereverItMoves) {
    EXPECT_THAT(origins({keyed(1), keyed(2), keyed(3)}, {keyed(3), keyed(9), keyed(1, 4)}),
                ElementsAre(2, -1, 0));
}

TEST_F(IdentityTest, NumbersAndNamesAreDifferentKeys) {
    EXPECT_THAT(origins({keyed(1)}, {words(1).id("1")}), ElementsAre(-1));
    EXPECT_THAT(origins({words(1).id("a")}, {words(1).id("aa")}), ElementsAre(-1));
}

TEST_F(IdentityTest, AKeyThatComesTwiceIsContinuedOnce) {
    EXPECT_THAT(origins({keyed(1)}, {keyed(1), keyed(1)}), ElementsAre(0, -1));
}

TEST_F(IdentityTest, WithoutKeysPlaceAndKindDecide) {
    EXPECT_THAT(origins({words(1), shape, words(2)}, {words(3), words(4), words(5), words(6)}),
                ElementsAre(0, -1, 2, -1));
}

TEST_F(IdentityTest, KeyedSiblingsDoNotShiftTheOthers) {
    EXPECT_THAT(origins({words(1), keyed(1), words(2)}, {words(1), words(2)}), ElementsAre(0, 2));
}

TEST_F(IdentityTest, OtherModifiersMakeAnotherElement) {
    EXPECT_THAT(origins({keyed(1)}, {words(1).padding({}).id(std::uint64_t{1})}), ElementsAre(-1));
    EXPECT_NE(keys(elements(words(1))), keys(elements(shape)));
}

TEST_F(IdentityTest, WhatIsShownByOtherMeansIsAnotherElement) {
    const View material = FilledShape{.outline = Rectangle(), .fill = Material::UltraThin};
    EXPECT_THAT(origins({shape, shape}, {shape, material}), ElementsAre(0, -1));
    EXPECT_THAT(origins({material}, {material}), ElementsAre(0));

    class SomeNative final : public InventedMeasures {
        [[nodiscard]] std::optional<Size> nativeButton(const Button& button) const override {
            return button.label.as<Text>() != nullptr ? std::optional(Size{}) : std::nullopt;
        }
    };
    const auto keyOf = [](const Button& button) {
        const SomeNative measures;
        return keys(arranged(button, {.size = {.width = 200, .height = 100}}, measures).elements);
    };
    const Button native = {.label = words(1)};
    const Button drawn = {.label = words(1).padding({})};
    EXPECT_NE(keyOf(native), keyOf(drawn));
    EXPECT_EQ(keyOf(native), keyOf({.label = words(2)}));
    // Whatever a label consists of that is arranged, its button stays.
    EXPECT_EQ(keyOf(drawn), keyOf({.label = shape}));
}

TEST_F(IdentityTest, SiblingsNeverShareAKey) {
    const View inner = HStack{.children = {words(1), words(1).id("0"), shape}};
    auto all = keys(elements(VStack{.children = {inner, inner.id("0"), inner, form()}}));
    std::ranges::sort(all);
    EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
    auto rows = keys(elements(form()).at(0).children);
    std::ranges::sort(rows);
    EXPECT_EQ(std::ranges::adjacent_find(rows), rows.end());
}

} // namespace
} // namespace pelistra::testing
