#include "overflow/OverflowItem.h"

#include "overflow/Lowercase.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace pelistra {

namespace {

struct KeyedText {
    std::string_view key;
    std::string_view text;
};

// The system's own icons, by their lower-cased window names.
constexpr auto namesByWindow = std::to_array<KeyedText>({
    {"wifi", "Wi\u2011Fi"},
    {"battery", "电池"},
    {"clock", "时钟"},
    {"bentobox", "控制中心"},
    {"nowplaying", "正在播放"},
    {"audiovideomodule", "音频与视频"},
});

// The first part found in the lower-cased owner and window names decides.
constexpr auto symbolsByPart = std::to_array<KeyedText>({
    {"wifi", "wifi"},
    {"battery", "battery.75percent"},
    {"clock", "clock"},
    {"audio", "speaker.wave.2"},
    {"sound", "speaker.wave.2"},
    {"play", "play.circle"},
    {"input", "keyboard"},
    {"输入", "keyboard"},
});

constexpr std::string_view unknownItem = "菜单栏项目";
constexpr std::string_view unknownSymbol = "circle.grid.2x2";
constexpr std::string_view genericNamePrefix = "Item-";

} // namespace

OverflowItem OverflowItem::from(PrivateMenuBarWindow window, ImagePtr capturedImage) {
    return {.id = window.id,
            .ownerPID = window.ownerPID,
            .ownerName = std::move(window.ownerName),
            .windowName = std::move(window.windowName),
            .bundleIdentifier = std::move(window.bundleIdentifier),
            .lastKnownFrame = window.frame,
            .capturedImage = std::move(capturedImage),
            .applicationIcon = std::move(window.applicationIcon)};
}

std::string OverflowItem::displayName() const {
    const std::string name = lowercased(windowName);
    const auto* const known = std::ranges::find(namesByWindow, name, &KeyedText::key);
    if (known != namesByWindow.end()) {
        return std::string(known->text);
    }
    return ownerName.empty() ? std::string(unknownItem) : ownerName;
}

std::string OverflowItem::tooltip() const {
    if (windowName.empty() || windowName.starts_with(genericNamePrefix)) {
        return ownerName;
    }
    return ownerName + " \u2014 " + displayName();
}

std::string OverflowItem::fallbackSymbol() const {
    const std::string searched = lowercased(ownerName + " " + windowName);
    const auto* const hit =
        std::ranges::find_if(symbolsByPart, [&searched](const KeyedText& entry) {
            return searched.find(entry.key) != std::string::npos;
        });
    return std::string(hit != symbolsByPart.end() ? hit->text : unknownSymbol);
}

} // namespace pelistra
