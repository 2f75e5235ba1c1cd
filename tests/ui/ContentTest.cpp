#include "ui/Content.h"

#include "ui/Nodes.h"

#include <gtest/gtest.h>

#include <string>

namespace pelistra::testing {
namespace {

using namespace ui;

class OneTextContent final : public Content {
public:
    [[nodiscard]] View body() override { return Text{.text = text.get()}; }

    Published<std::string> text{std::string("before")};

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) override {
        std::vector<SubscriptionPtr> tokens;
        tokens.push_back(observeChanges(text, changed));
        return tokens;
    }
};

TEST(Content, AnnouncesBeforeTheChange) {
    OneTextContent content;
    std::string seen;
    const auto token = content.observe([&] { seen = content.text.get(); });
    content.text.set("after");
    EXPECT_EQ(seen, "before");
    EXPECT_TRUE(content.body() == View(Text{.text = "after"}));
}

TEST(Content, AnnouncesNothingOnceTheTokenIsGone) {
    OneTextContent content;
    int announcements = 0;
    auto token = content.observe([&] { ++announcements; });
    token.reset();
    content.text.set("after");
    content.setEnvironment({.reduceMotion = true});
    EXPECT_EQ(announcements, 0);
}

TEST(Content, TheTokenMayOutliveTheContent) {
    auto content = std::make_unique<OneTextContent>();
    const auto token = content->observe([] {});
    content.reset();
    EXPECT_NE(token, nullptr);
}

TEST(Content, AnnouncesTheEnvironmentOnlyWhenItDiffers) {
    OneTextContent content;
    int announcements = 0;
    const auto token = content.observe([&] { ++announcements; });
    EXPECT_FALSE(content.environment().reduceMotion);
    content.setEnvironment({.reduceMotion = false});
    EXPECT_EQ(announcements, 0);
    content.setEnvironment({.reduceMotion = true});
    content.setEnvironment({.reduceMotion = true});
    EXPECT_EQ(announcements, 1);
    EXPECT_TRUE(content.environment().reduceMotion);
}

} // namespace
} // namespace pelistra::testing
