#include "overflow/OverflowStore.h"

#include "tests/overflow/OverflowFixture.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::NotNull;
using ::testing::SizeIs;

const std::string restartAdvice = "允许屏幕录制后，请重新启动 Pelistra，即可显示菜单栏原图标。";

class PictureCaptureTest : public OverflowFixture {
protected:
    void SetUp() override { store = makeStore(); }

    // Items without pictures, in that order.
    void give(const std::vector<WindowId>& ids) {
        std::vector<OverflowItem> items;
        for (const WindowId id : ids) {
            items.push_back(itemWithId(id));
        }
        store->items.set(std::move(items));
        journal.clear();
    }
    [[nodiscard]] ImagePtr pictureAt(std::size_t index) const {
        return store->items.get().at(index).capturedImage;
    }
    [[nodiscard]] std::vector<std::string> captures() const {
        return journal.entriesStartingWith("capture");
    }

    std::unique_ptr<OverflowStore> store;
};

TEST_F(PictureCaptureTest, EveryItemGetsItsPicture) {
    give({3, 1, 2});
    store->captureMissingImages();
    EXPECT_THAT(journal.entries(),
                ElementsAre("preflightAccess", "capture 3 9", "capture 1 9", "capture 2 9"));
    EXPECT_THAT(idsOf(store->items.get()), ElementsAre(3, 1, 2));
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_THAT(pictureAt(index), NotNull());
    }
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PictureCaptureTest, PixelsAreTakenAsPoints) {
    give({1, 2, 3});
    capture.sizes[1] = {.width = 60, .height = 48};
    capture.sizes[2] = {.width = 0, .height = 0};
    capture.sizes[3] = {.width = 100'000, .height = 1};
    store->captureMissingImages();
    EXPECT_EQ(pictureAt(0)->size(), (Size{.width = 60, .height = 48}));
    // Any picture is kept, whatever its size.
    EXPECT_EQ(pictureAt(1)->size(), (Size{.width = 0, .height = 0}));
    EXPECT_EQ(pictureAt(2)->size(), (Size{.width = 100'000, .height = 1}));
}

TEST_F(PictureCaptureTest, ItemsThatHaveAPictureAreSkipped) {
    give({1, 2, 3});
    const auto picture = std::make_shared<FakeImage>(Size{.width = 1, .height = 1});
    store->items.mutate([&picture](auto& items) { items[1].capturedImage = picture; });
    store->captureMissingImages();
    EXPECT_THAT(captures(), ElementsAre("capture 1 9", "capture 3 9"));
    EXPECT_EQ(pictureAt(1), picture);
    EXPECT_THAT(pictureAt(0), NotNull());
    EXPECT_THAT(pictureAt(2), NotNull());
    journal.clear();
    store->captureMissingImages();
    EXPECT_THAT(captures(), IsEmpty());
}

TEST_F(PictureCaptureTest, RefusedPicturesAreTriedAgainNextTime) {
    give({1, 2, 3});
    capture.refusals = {{1, CaptureRefusal::NoWindowArray}, {2, CaptureRefusal::NoImage}};
    store->captureMissingImages();
    EXPECT_THAT(captures(), SizeIs(3));
    EXPECT_EQ(pictureAt(0), nullptr);
    EXPECT_EQ(pictureAt(1), nullptr);
    EXPECT_THAT(pictureAt(2), NotNull());
    EXPECT_EQ(store->message.get(), std::nullopt);
    EXPECT_THAT(log.lines, IsEmpty());

    capture.refusals.clear();
    journal.clear();
    store->captureMissingImages();
    EXPECT_THAT(captures(), ElementsAre("capture 1 9", "capture 2 9"));
    EXPECT_THAT(pictureAt(0), NotNull());
    EXPECT_THAT(pictureAt(1), NotNull());
}

TEST_F(PictureCaptureTest, EachStoredPictureIsOnePublication) {
    give({1, 2, 3});
    capture.refusals = {{2, CaptureRefusal::NoImage}};
    std::vector<std::vector<bool>> published;
    std::vector<std::size_t> before;
    const auto token = store->items.observe([&](const std::vector<OverflowItem>& items) {
        std::vector<bool> pictures;
        for (const OverflowItem& item : items) {
            pictures.push_back(item.capturedImage != nullptr);
        }
        published.push_back(pictures);
        // What can be read is still the list before the change.
        before.push_back(static_cast<std::size_t>(
            std::ranges::count_if(store->items.get(), [](const OverflowItem& item) {
                return item.capturedImage != nullptr;
            })));
    });
    store->captureMissingImages();
    EXPECT_THAT(published,
                ElementsAre(ElementsAre(true, false, false), ElementsAre(true, false, true)));
    EXPECT_THAT(before, ElementsAre(0, 1));
}

TEST_F(PictureCaptureTest, PermissionIsAskedAndPublishedEveryTime) {
    std::vector<bool> published;
    const auto token = store->hasScreenCapturePermission.observe(
        [&](const bool& permission) { published.push_back(permission); });
    store->captureMissingImages();
    store->captureMissingImages();
    capture.granted = false;
    store->captureMissingImages();
    EXPECT_FALSE(store->hasScreenCapturePermission.get());
    store->captureMissingImages();
    capture.granted = true;
    store->captureMissingImages();
    EXPECT_TRUE(store->hasScreenCapturePermission.get());
    EXPECT_THAT(published, ElementsAre(true, true, false, false, true));
}

TEST_F(PictureCaptureTest, WithoutPermissionNoItemChanges) {
    give({1, 2});
    EXPECT_TRUE(store->hasScreenCapturePermission.get());
    int publications = 0;
    const auto token = store->items.observe([&](const auto&) { ++publications; });
    capture.granted = false;
    store->captureMissingImages();
    EXPECT_FALSE(store->hasScreenCapturePermission.get());
    EXPECT_THAT(journal.entries(), ElementsAre("preflightAccess"));
    EXPECT_EQ(publications, 0);
    EXPECT_EQ(store->message.get(), std::nullopt);
}

TEST_F(PictureCaptureTest, EmptyListNeedsNoPicture) {
    int publications = 0;
    const auto token = store->items.observe([&](const auto&) { ++publications; });
    journal.clear();
    store->captureMissingImages();
    EXPECT_THAT(journal.entries(), ElementsAre("preflightAccess"));
    EXPECT_EQ(publications, 0);
}

TEST_F(PictureCaptureTest, ItemsThatAppearMeanwhileAreLeftForTheNextTime) {
    give({1, 2});
    capture.duringCapture = [this](WindowId id) {
        if (id == 2) {
            store->items.mutate([](auto& items) { items.push_back(itemWithId(3)); });
        }
    };
    store->captureMissingImages();
    EXPECT_THAT(captures(), ElementsAre("capture 1 9", "capture 2 9"));
    EXPECT_THAT(idsOf(store->items.get()), ElementsAre(1, 2, 3));
    EXPECT_THAT(pictureAt(1), NotNull());
    EXPECT_EQ(pictureAt(2), nullptr);
}

TEST_F(PictureCaptureTest, GrantedRequestTakesThePictures) {
    give({1, 2});
    capture.granted = true;
    std::vector<bool> published;
    const auto token = store->hasScreenCapturePermission.observe(
        [&](const bool& permission) { published.push_back(permission); });
    store->message.set("text");
    store->requestScreenCapturePermission();
    EXPECT_THAT(journal.entries(),
                ElementsAre("requestAccess", "preflightAccess", "capture 1 9", "capture 2 9"));
    EXPECT_THAT(published, ElementsAre(true, true));
    EXPECT_EQ(store->message.get(), "text");
}

TEST_F(PictureCaptureTest, GrantedRequestWithoutPermissionYetTakesNone) {
    give({1});
    capture.granted = false;
    std::vector<bool> published;
    const auto token = store->hasScreenCapturePermission.observe(
        [&](const bool& permission) { published.push_back(permission); });
    store->requestScreenCapturePermission();
    EXPECT_THAT(journal.entries(), ElementsAre("requestAccess", "preflightAccess"));
    EXPECT_THAT(published, ElementsAre(true, false));
    EXPECT_EQ(store->message.get(), std::nullopt);
}

TEST_F(PictureCaptureTest, RefusedRequestGivesAdvice) {
    give({1});
    capture.granted = false;
    capture.grantsRequest = false;
    std::vector<std::string> published;
    const auto permission = store->hasScreenCapturePermission.observe(
        [&](const bool& value) { published.emplace_back(value ? "granted" : "not granted"); });
    const auto message = store->message.observe(
        [&](const auto& value) { published.push_back(value.value_or("absent")); });
    store->requestScreenCapturePermission();
    EXPECT_THAT(journal.entries(), ElementsAre("requestAccess", "preflightAccess"));
    EXPECT_THAT(published, ElementsAre("not granted", restartAdvice));
    EXPECT_FALSE(store->hasScreenCapturePermission.get());
    EXPECT_EQ(store->message.get(), restartAdvice);
}

TEST_F(PictureCaptureTest, RefusedRequestBelievesThePreflightAndTakesNoPicture) {
    give({1});
    capture.grantsRequest = false;
    store->requestScreenCapturePermission();
    EXPECT_TRUE(store->hasScreenCapturePermission.get());
    EXPECT_EQ(store->message.get(), restartAdvice);
    EXPECT_THAT(captures(), IsEmpty());
}

using PictureCaptureDeathTest = PictureCaptureTest;
constexpr const char* shrank =
    "Fatal error: the list of hidden items shrank while their pictures were taken";

TEST_F(PictureCaptureDeathTest, ListThatShrinksBetweenTwoPicturesIsFatal) {
    give({1, 2, 3});
    // The first picture was not taken, so the look at the second item finds the list shorter.
    capture.refusals = {{1, CaptureRefusal::NoImage}};
    capture.duringCapture = [this](WindowId) { store->items.set({}); };
    EXPECT_DEATH(store->captureMissingImages(), shrank);
}

TEST_F(PictureCaptureDeathTest, ListThatShrinksDuringAPictureIsFatal) {
    give({1});
    capture.duringCapture = [this](WindowId) { store->items.set({}); };
    EXPECT_DEATH(store->captureMissingImages(), shrank);
}

} // namespace
} // namespace pelistra::testing
