#include "platform/linux/windows/UnusedMemory.h"

#include "platform/Window.h"
#include "platform/linux/windows/WindowFrame.h"
#include "tests/linux/windows/QtOnDisplay.h"

#include <fstream>
#include <memory>
#include <string>

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

namespace pelistra::testing {

namespace {

using linux::UnusedMemory;
using linux::WindowFrame;

// Whether a file of a font is part of this process's memory. Its name says that it is one.
bool fontIsLoaded() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(".ttf") || line.ends_with(".ttc") || line.ends_with(".otf")) {
            return true;
        }
    }
    return false;
}

QImage drawnText() {
    constexpr QSize size{200, 60};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("Pelistra 菜单栏"));
    return image;
}

class UnusedMemoryTests : public QtOnDisplay {
protected:
    [[nodiscard]] std::unique_ptr<WindowFrame> window() {
        constexpr Size size{.width = 300, .height = 200};
        auto frame = std::make_unique<WindowFrame>(
            size, window_style::titled | window_style::closable, *connection_);
        frame->setPutAwayHandler([this] { memory_.giveBackAfterWindow(); });
        return frame;
    }

    UnusedMemory memory_{*queue_};
};

TEST_F(UnusedMemoryTests, FontsAreForgottenAndComeBackTheSame) {
    const QImage before = drawnText();
    ASSERT_TRUE(fontIsLoaded());
    UnusedMemory::giveBackWindowMemory();
    EXPECT_FALSE(fontIsLoaded());
    EXPECT_EQ(drawnText(), before);
}

TEST_F(UnusedMemoryTests, CachedPicturesAreForgotten) {
    QPixmap picture(QSize(8, 8));
    picture.fill(Qt::red);
    ASSERT_TRUE(QPixmapCache::insert("picture", picture));
    UnusedMemory::giveBackWindowMemory();
    EXPECT_FALSE(QPixmapCache::find("picture", &picture));
}

TEST_F(UnusedMemoryTests, AClosedWindowGivesBackItsFonts) {
    const auto frame = window();
    frame->bringUp();
    static_cast<void>(drawnText());
    ASSERT_TRUE(fontIsLoaded());
    frame->close();
    EXPECT_TRUE(fontIsLoaded());
    EXPECT_TRUE(runUntil([] { return !fontIsLoaded(); }));
}

TEST_F(UnusedMemoryTests, NothingIsGivenBackWhileAnotherWindowShows) {
    const auto first = window();
    const auto second = window();
    first->bringUp();
    second->bringUp();
    static_cast<void>(drawnText());
    first->close();
    bool waited = false;
    constexpr Seconds longerThanThat{2.3};
    queue_->asyncAfter(longerThanThat, [&waited] { waited = true; });
    ASSERT_TRUE(runUntil([&waited] { return waited; }));
    EXPECT_TRUE(fontIsLoaded());
    second->close();
    EXPECT_TRUE(runUntil([] { return !fontIsLoaded(); }));
}

TEST_F(UnusedMemoryTests, NothingHappensOnceItIsGone) {
    {
        UnusedMemory shortLived(*queue_);
        shortLived.giveBackAfterWindow();
    }
    static_cast<void>(drawnText());
    bool waited = false;
    constexpr Seconds longerThanThat{2.3};
    queue_->asyncAfter(longerThanThat, [&waited] { waited = true; });
    ASSERT_TRUE(runUntil([&waited] { return waited; }));
    EXPECT_TRUE(fontIsLoaded());
}

} // namespace

} // namespace pelistra::testing
